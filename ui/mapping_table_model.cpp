// ui/mapping_table_model.cpp — the mapping grids as Qt table models.
#include "ui/mapping_table_model.h"

#include <QBrush>
#include <QColor>
#include <QFont>

namespace ui {

MappingTableModel::MappingTableModel(QStringList captions, Source source, QObject* parent)
    : QAbstractTableModel(parent), captions_(std::move(captions)), source_(std::move(source)) {
  rows_ = static_cast<int>(source_.count());
}

void MappingTableModel::reload() {
  beginResetModel();
  rows_ = static_cast<int>(source_.count());
  endResetModel();
}

int MappingTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int MappingTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(captions_.size());
}

QVariant MappingTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rows_ || index.row() >= static_cast<int>(source_.count())) return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
    const std::vector<std::string> values = source_.row(row);
    const auto column = static_cast<std::size_t>(index.column());
    return column < values.size() ? QString::fromStdString(values[column]) : QString();
  }
  if (role == Qt::ForegroundRole) {
    const std::vector<std::string> values = source_.row(row);
    if (values.size() > 4 && values[4] == "No Importar") return QBrush(QColor(0x80, 0x80, 0x80));
  }
  if (role == Qt::FontRole && source_.to_create && source_.to_create(row)) {
    QFont italic;
    italic.setItalic(true);
    return italic;
  }
  return {};
}

QVariant MappingTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) return section + 1;
  return section >= 0 && section < captions_.size() ? captions_[section] : QVariant();
}

}  // namespace ui
