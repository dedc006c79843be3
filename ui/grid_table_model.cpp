// ui/grid_table_model.cpp — the preview grids as Qt table models, paged.
#include "ui/grid_table_model.h"

#include <QBrush>
#include <QColor>
#include <algorithm>

#include "ui/grid_captions.h"

namespace ui {

GridTableModel::GridTableModel(const preview::GridModel& grid, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid) {
  shown_ = std::min<int>(kPageRows, static_cast<int>(grid_.row_count()));
}

void GridTableModel::set_fetch_source(std::function<bool()> can_fetch, std::function<void()> fetch) {
  can_fetch_ = std::move(can_fetch);
  fetch_ = std::move(fetch);
}

void GridTableModel::reload() {
  beginResetModel();
  shown_ = std::min<int>(kPageRows, static_cast<int>(grid_.row_count()));
  endResetModel();
}

int GridTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shown_; }

int GridTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(grid_.columns().size());
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= shown_ || index.row() >= static_cast<int>(grid_.row_count()))
    return {};
  const auto row = static_cast<std::size_t>(index.row());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole: {
      const std::vector<std::string>& values = grid_.row(row);
      const auto column = static_cast<std::size_t>(index.column());
      return column < values.size() ? QString::fromStdString(values[column]) : QString();
    }
    case Qt::ForegroundRole:
      return StyleForeground(grid_.style(row));
    case Qt::BackgroundRole:
      return StyleBackground(grid_.style(row));
    default:
      return {};
  }
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) return section + 1;
  if (section < 0 || section >= static_cast<int>(grid_.columns().size())) return {};
  const preview::GridColumn& column = grid_.columns()[static_cast<std::size_t>(section)];
  // A heading the grid names after its field gets the window's caption.
  if (column.caption == column.field) {
    const auto& captions = FieldCaptions();
    if (const auto found = captions.find(column.field); found != captions.end()) return found->second;
  }
  return QString::fromStdString(column.caption);
}

bool GridTableModel::canFetchMore(const QModelIndex& parent) const {
  if (parent.isValid()) return false;
  if (shown_ < static_cast<int>(grid_.row_count())) return true;
  return can_fetch_ && can_fetch_();
}

void GridTableModel::fetchMore(const QModelIndex& parent) {
  if (parent.isValid()) return;
  // The grid's own rows first; its source only once they are all shown.
  if (shown_ >= static_cast<int>(grid_.row_count()) && can_fetch_ && can_fetch_() && fetch_) fetch_();
  const int available = static_cast<int>(grid_.row_count());
  const int next = std::min(available, shown_ + kPageRows);
  if (next <= shown_) return;
  beginInsertRows(QModelIndex(), shown_, next - 1);
  shown_ = next;
  endInsertRows();
}

QVariant StyleForeground(const std::string& style) {
  if (style == "Suma") return QBrush(QColor(0x1b, 0x5e, 0x20));
  if (style == "Resta") return QBrush(QColor(0xb7, 0x1c, 0x1c));
  return {};
}

QVariant StyleBackground(const std::string& style) {
  if (style == "Resta") return QBrush(QColor(0xfd, 0xec, 0xea));
  return {};
}

}  // namespace ui
