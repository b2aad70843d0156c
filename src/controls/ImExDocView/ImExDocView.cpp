#include "controls/ImExDocView/ImExDocView.h"

#include "controls/ImExDocView/layout.h"
#include "controls/common/ownEvent.h"
#include "ui_ImExDocView.h"

#include <QShortcut>

namespace imex {

namespace {

constexpr QSize kSize(640, 480);
constexpr QSize kSmallest(200, 140); // both buttons, and some lines of a document

} // namespace

ImExDocView::ImExDocView(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::ImExDocView>()) {
  m_ui->setupUi(this);
  connectControls();
  UserControl_Initialize();
}

ImExDocView::~ImExDocView() = default;

void ImExDocView::connectControls() {
  const auto onClick = [this](QAbstractButton* button, void (ImExDocView::*clicked)()) {
    connect(button, &QAbstractButton::clicked, this, [this, clicked] { runAsEvent([&] { (this->*clicked)(); }); });
  };
  onClick(m_ui->cmdPrint, &ImExDocView::cmdPrint_Click);
  onClick(m_ui->cmdOK, &ImExDocView::cmdOK_Click);

  const auto onKey = [this](const QKeySequence& keys, auto pressed) {
    auto* shortcut = new QShortcut(keys, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, pressed);
  };
  onKey(QKeySequence::Print, [this] { m_ui->cmdPrint->click(); });
  onKey(Qt::Key_Escape, [this] {
    if (!m_ui->WebBrowser1->closeFind())
      m_ui->cmdOK->click();
  });
  addAction(m_ui->WebBrowser1->findAction());
}

host::Browser& ImExDocView::browser() const {
  return *m_ui->WebBrowser1;
}

QSize ImExDocView::sizeHint() const {
  return kSize;
}

QSize ImExDocView::minimumSizeHint() const {
  return kSmallest;
}

void ImExDocView::resizeEvent(QResizeEvent* /*event*/) {
  UserControl_Resize();
}

// --- Procedures -----------------------------------------------------------------------------------------------------

void ImExDocView::UserControl_Initialize() {
  handler("UserControl_Initialize", [&] { browser().navigate("about:blank"); });
}

void ImExDocView::showDoc(QString& path) {
  tracedIn(
      *this, labels("showDoc"), [&] { browser().navigate(toCore(path)); }, Reraise{});
}

/// The layout is one statement, so that a size that fails moves nothing.
void ImExDocView::UserControl_Resize() {
  tracedResize(*this, [&] {
    const ViewerLayout layout = viewerLayout(size(), m_ui->cmdOK->size());
    m_ui->WebBrowser1->setGeometry(layout.browser);
    m_ui->cmdOK->setGeometry(layout.ok);
    m_ui->cmdPrint->setGeometry(layout.print);
  });
}

void ImExDocView::cmdPrint_Click() {
  handler("cmdPrint_Click", [&] { browser().print(); }, {"Error encountered while attempting to print."});
}

void ImExDocView::cmdOK_Click() {
  handler("cmdOK_Click", [&] { Q_EMIT closed(); });
}

} // namespace imex
