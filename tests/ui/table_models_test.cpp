// The window's table models over the grid models: paging (the grid's own
// rows, then its source's), the Suma/Resta looks, and the mapping grids'
// marks for concepts not imported or created in KEL.
#include <gtest/gtest.h>

#include <QBrush>
#include <QFont>

#include "ui/grid_table_model.h"
#include "ui/mapping_table_model.h"
#include "ui_parts_support.h"

namespace {

preview::GridModel rows_grid(int rows) {
  preview::GridModel grid(preview::GridModel::ColumnsNamed({"id", "Nombre"}));
  for (int i = 0; i < rows; ++i) grid.add_row({std::to_string(i), "fila " + std::to_string(i)});
  return grid;
}

TEST(GridTableModel, PagesTheGridThenItsSource) {
  ui_parts_test::app();
  struct Case {
    int grid_rows;     // rows the grid holds at first
    int source_pages;  // further pages of 100 its source can give
    std::vector<int> shown;  // rowCount at first and after each fetchMore, until nothing more
  };
  const Case cases[] = {
      {0, 0, {0}},
      {150, 0, {150}},
      {450, 0, {200, 400, 450}},
      {100, 2, {100, 200, 300}},  // the source is asked only once the grid's rows are all shown
  };
  for (const Case& c : cases) {
    preview::GridModel grid = rows_grid(c.grid_rows);
    ui::GridTableModel model(grid);
    int pages_left = c.source_pages;
    int next_id = c.grid_rows;
    model.set_fetch_source([&] { return pages_left > 0; },
                           [&] {
                             --pages_left;
                             for (int i = 0; i < 100; ++i) grid.add_row({std::to_string(next_id++), "más"});
                           });
    std::vector<int> shown{model.rowCount()};
    while (model.canFetchMore(QModelIndex())) {
      model.fetchMore(QModelIndex());
      shown.push_back(model.rowCount());
    }
    EXPECT_EQ(shown, c.shown) << c.grid_rows << " filas";
    if (model.rowCount() > 0) {
      EXPECT_EQ(model.index(model.rowCount() - 1, 0).data().toInt(), model.rowCount() - 1);
    }
  }
}

TEST(GridTableModel, CaptionsStylesAndReload) {
  ui_parts_test::app();
  preview::GridModel grid({{"Codigo", "Codigo"}, {"Coef", "Valor"}});
  grid.add_row({"1", "10"}, "Suma");
  grid.add_row({"2", "20"}, "Resta");
  grid.add_row({"3", "30"});
  ui::GridTableModel model(grid);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Valor");
  EXPECT_EQ(model.index(1, 1).data().toString(), "20");
  const QColor suma = model.index(0, 0).data(Qt::ForegroundRole).value<QBrush>().color();
  const QColor resta = model.index(1, 0).data(Qt::ForegroundRole).value<QBrush>().color();
  EXPECT_NE(suma, resta);
  EXPECT_GT(suma.green(), suma.red());   // additions green
  EXPECT_GT(resta.red(), resta.green());  // subtractions red
  EXPECT_TRUE(model.index(1, 0).data(Qt::BackgroundRole).isValid());
  EXPECT_FALSE(model.index(2, 0).data(Qt::ForegroundRole).isValid());  // a plain row

  grid.clear();
  model.reload();
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_FALSE(model.index(0, 0).data().isValid());
}

TEST(MappingTableModel, MarksConceptsNotImportedAndToCreate) {
  ui_parts_test::app();
  const std::vector<std::vector<std::string>> rows = {
      {"1", "001->Sueldo", "17", "Sueldo", "Importar"},
      {"2", "002->Viático", "", "", "No Importar"},
      {"3", "003->Prima", "", "", "Importar"},
  };
  const std::vector<bool> create = {false, false, true};
  ui::MappingTableModel model({"Código", "Concepto a importar", "Código KEL", "Concepto de KEL", "Importar"},
                              {[&] { return rows.size(); }, [&](std::size_t i) { return rows[i]; },
                               [&](std::size_t i) { return create[i]; }});
  ASSERT_EQ(model.rowCount(), 3);
  EXPECT_EQ(model.headerData(2, Qt::Horizontal).toString(), "Código KEL");
  EXPECT_EQ(model.index(0, 3).data().toString(), "Sueldo");
  EXPECT_FALSE(model.index(0, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_TRUE(model.index(1, 0).data(Qt::ForegroundRole).isValid());  // "No Importar" greyed
  EXPECT_FALSE(model.index(0, 0).data(Qt::FontRole).isValid());
  EXPECT_TRUE(model.index(2, 1).data(Qt::FontRole).value<QFont>().italic());  // created in KEL
}

}  // namespace
