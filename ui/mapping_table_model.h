// ui/mapping_table_model.h — a read-only Qt table model over a mapping grid
// (GridRelacConc or GridRelacTL): fixed column captions and the grid's rows,
// read through two accessors so that either grid fits.
//
// A concept that is "No Importar" is drawn greyed; one that will be created
// in KEL (no relation) in italics, so the user sees at a glance what an
// import does with each concept.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

namespace ui {

class MappingTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  struct Source {
    std::function<std::size_t()> count;                        // rows of the grid
    std::function<std::vector<std::string>(std::size_t)> row;   // values of row i
    std::function<bool(std::size_t)> to_create;                 // optional: row i will be created in KEL
  };

  MappingTableModel(QStringList captions, Source source, QObject* parent = nullptr);

  // The grid was refilled.
  void reload();

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  QStringList captions_;
  Source source_;
  int rows_ = 0;
};

}  // namespace ui
