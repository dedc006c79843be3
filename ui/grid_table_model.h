// ui/grid_table_model.h — a read-only Qt table model over one grid of the
// preview (preview::GridModel): its captions, its texts and its row styles.
//
// Rows are handed to the view a page at a time (canFetchMore/fetchMore), so a
// grid of thousands of rows opens at once and grows as the user scrolls. A
// grid whose rows come from an open cursor (the liquidation headers) also
// gets a `fetch_source` that reads further rows into the GridModel when the
// view has shown all it holds.
//
// Headings named after their field take the window's Spanish caption
// (grid_captions.h).
//
// "Suma" and "Resta" rows (the lines of a liquidation) are drawn in two
// styles: additions in dark green, subtractions in dark red on a pale red.
#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "preview/grid_model.h"

namespace ui {

class GridTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int kPageRows = 200;

  // `grid` must outlive the model.
  explicit GridTableModel(const preview::GridModel& grid, QObject* parent = nullptr);

  // More rows from the grid's source: `can_fetch` tells whether there are,
  // `fetch` appends them to the grid.
  void set_fetch_source(std::function<bool()> can_fetch, std::function<void()> fetch);

  // The grid was refilled: the view starts again from its first page.
  void reload();

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

 private:
  const preview::GridModel& grid_;
  int shown_ = 0;  // rows handed to the view so far
  std::function<bool()> can_fetch_;
  std::function<void()> fetch_;
};

// The look of a row style ("Suma", "Resta"; anything else is plain):
// foreground and background colours for Qt's roles, or an invalid QVariant.
QVariant StyleForeground(const std::string& style);
QVariant StyleBackground(const std::string& style);

}  // namespace ui
