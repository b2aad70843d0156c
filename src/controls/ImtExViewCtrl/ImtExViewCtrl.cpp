#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"

#include "controls/common/procedures.h"
#include "ui_ImtExViewCtrl.h"

#include <array>

namespace imex {

namespace {

constexpr int kRows = 21; // the titles and twenty jobs
constexpr int kNumberWidth = 400;
constexpr int kFieldWidth = 1200;

/// The titles from column 1 on. All columns but the last have a width of their own.
constexpr std::array<std::string_view, 7> kTitles{"JOB NAME", "JOB TYPE",  "START TIME", "FINISH TIME",
                                                  "STATUS",   "REQUESTOR", "LOG"};

} // namespace

ImtExViewCtrl::ImtExViewCtrl(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::ImtExViewCtrl>()) {
  m_ui->setupUi(this);
  UserControl_Initialize();
}

ImtExViewCtrl::~ImtExViewCtrl() = default;

QSize ImtExViewCtrl::sizeHint() const {
  constexpr QSize kUsual(720, 400);
  return QWidget::sizeHint().expandedTo(kUsual);
}

void ImtExViewCtrl::UserControl_Initialize() {
  tracedIn(
      *this, {.name = "UserControl_Initialize", .errorSource = kControlErrorSource},
      [&] {
        host::Grid& grid = m_ui->MSFlexGrid1->cells();
        const int columns = static_cast<int>(kTitles.size()) + 1;
        grid.setSize({kRows, columns});
        grid.layout().setColumnWidth(0, kNumberWidth);
        for (int column = 1; column < columns; ++column) {
          grid.setText({0, column}, kTitles[static_cast<std::size_t>(column) - 1]);
          if (column < columns - 1)
            grid.layout().setColumnWidth(column, kFieldWidth);
        }
        grid.setText({1, 0}, "1");
      },
      ShowBox{});
}

} // namespace imex
