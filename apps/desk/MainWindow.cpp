#include "desk/MainWindow.h"

#include "controls/common/text.h"
#include "desk/SettingsDialog.h"
#include "desk/panels.h"
#include "host/MessageBox.h"
#include "host/Services.h"

#include <QCloseEvent>
#include <QDir>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QStatusBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace imex::desk {

namespace {

constexpr QSize kSize(1040, 700);
constexpr double kGreatestShare = 0.9; // of the screen
constexpr int kListSpacing = 3;
constexpr int kListMargin = 12; // around the names of the pages

QString offer() {
  return QStringLiteral("No import service is set. Start one on this machine?");
}

void showNotice(const std::string& text) {
  host::required(host::services().messageBox).show(text, host::kExclamationStyle, "Corvana");
}

QVBoxLayout* plainLayout(QWidget* parent) {
  auto* layout = new QVBoxLayout(parent);
  layout->setContentsMargins({});
  return layout;
}

} // namespace

// --- Construction ---------------------------------------------------------------------------------------------------

MainWindow::MainWindow(DeskSettings& settings, Surroundings surroundings)
    : m_settings(settings), m_surroundings(std::move(surroundings)), m_list(new QListWidget),
      m_stack(new QStackedWidget), m_bar(new NoticeBar),
      m_importPanel(new ImExActionCtrl), m_documents{new DocumentPage(DocumentKind::project),
                                                     new DocumentPage(DocumentKind::quote),
                                                     new DocumentPage(DocumentKind::order)},
      m_editor(new EditorPage), m_docs(new DocumentsPage), m_jobLog(new ImtExViewCtrl) {
  setWindowTitle(toQt(m_settings.displayName()));
  buildPages();
  buildMenus();
  connectReturns();
  connectService();
  tell(QStringLiteral("Ready"));
  resize(kSize.boundedTo(screen()->availableSize() * kGreatestShare));
}

MainWindow::~MainWindow() {
  m_settings.useLocalService(std::nullopt);
}

void MainWindow::buildPages() {
  m_list->setObjectName(QStringLiteral("pages"));
  m_list->setAccessibleName(QStringLiteral("Pages"));
  m_list->setSpacing(kListSpacing);
  m_importPanel->setObjectName(QStringLiteral("panelImport"));
  allowRetry(*m_importPanel);
  addPage(QStringLiteral("Import"), inScrollArea(*m_importPanel));
  connectPanel(Page::import);
  for (DocumentPage* page : m_documents) {
    const Page position = static_cast<Page>(m_stack->count());
    addPage(nameOf(static_cast<DocumentKind>(m_stack->count() - 1)), inScrollArea(*page));
    connectPanel(position);
    m_undo.addStack(&page->undoStack());
    connect(page, &DocumentPage::inserted, this,
            [this](int count) { tell(countOfLines(count) + QStringLiteral(" inserted")); });
  }
  addPage(QStringLiteral("Editor"), m_editor);
  addPage(QStringLiteral("Documents"), m_docs);
  m_jobLog->setObjectName(QStringLiteral("jobLog"));
  addPage(QStringLiteral("Job Log"), m_jobLog);
  m_list->setFixedWidth(m_list->sizeHintForColumn(0) + 2 * (m_list->frameWidth() + kListMargin));
  connect(m_list, &QListWidget::currentRowChanged, this, &MainWindow::goTo);

  auto* pages = new QWidget;
  auto* columns = new QHBoxLayout(pages);
  columns->addWidget(m_list);
  columns->addWidget(m_stack, 1);
  auto* centre = new QWidget;
  QVBoxLayout* layout = plainLayout(centre);
  layout->setSpacing(0);
  layout->addWidget(m_bar);
  layout->addWidget(pages, 1);
  setCentralWidget(centre);
}

/// A page that stays usable in a window that is smaller than it.
QWidget* MainWindow::inScrollArea(QWidget& page) {
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setWidget(&page);
  area->setFocusProxy(&page);
  return area;
}

void MainWindow::addPage(const QString& name, QWidget* page) {
  m_list->addItem(name);
  m_stack->addWidget(page);
}

void MainWindow::connectPanel(Page page) {
  ImExActionCtrl& panel = panelOf(page);
  connect(&panel, &ImExActionCtrl::exitMaintenance, this, &QWidget::close);
  connect(&panel, &ImExActionCtrl::showDocs, this, [this, page](QString& path) {
    m_docs->show(path);
    m_docsOrigin = page;
    showPage(Page::documents);
  });
  connectEditing(page);
}

void MainWindow::connectEditing(Page page) {
  ImExActionCtrl& panel = panelOf(page);
  connect(&panel, &ImExActionCtrl::editImportFile, this,
          [this, page](QString& message, Integer& rows, Integer& columns, QString& file, StringsPtr& headers,
                       Integer& delimiter) {
            openInEditor(page, [&] {
              m_editor->edit({file, rows, columns, headers, delimiter});
              tell(message);
            });
          });
  connect(&panel, &ImExActionCtrl::newImportFile, this,
          [this, page](QString& message, Integer& rows, Integer& columns, QString& file, StringsPtr& headers,
                       Integer& delimiter) {
            openInEditor(page, [&] {
              m_editor->create({file, rows, columns, headers, delimiter});
              tell(message);
            });
          });
  connect(&panel, &ImExActionCtrl::showErrors, this,
          [this, page](QString& file, RowsPtr& lines, ErrorBeansPtr& messages, Integer& rows, Integer& columns,
                       StringsPtr& headers, Integer& delimiter) {
            openInEditor(page, [&] {
              m_editor->showErrors({file, rows, columns, headers, delimiter}, lines, messages);
              tell(QStringLiteral("The messages stand beside the lines"));
            });
          });
}

/// The way back to the panel, from where a corrected file is imported again.
void MainWindow::connectReturns() {
  connect(m_editor, &EditorPage::saved, this, [this](const QString& path) {
    panelOf(m_editorOrigin).findChild<QLineEdit*>(QStringLiteral("txtFilePath"))->setText(path);
    returnTo(m_editorOrigin);
    tell(QStringLiteral("%1 is saved").arg(path));
  });
  connect(m_editor, &EditorPage::cancelled, this, [this] {
    returnTo(m_editorOrigin);
    tell(QStringLiteral("Nothing was saved"));
  });
  connect(m_docs, &DocumentsPage::closed, this, [this] { showPage(m_docsOrigin); });
}

/// The letters of the menus are those that the panel leaves free, so that Alt and a letter means one thing.
void MainWindow::buildMenus() {
  QMenu* corvana = menuBar()->addMenu(QStringLiteral("&Corvana"));
  QAction* settings = corvana->addAction(QStringLiteral("&Settings..."), this, &MainWindow::showSettings);
  settings->setShortcut(Qt::CTRL | Qt::Key_Comma);
  corvana->addSeparator();
  QAction* quit = corvana->addAction(QStringLiteral("E&xit"), this, &QWidget::close);
  quit->setShortcut(Qt::CTRL | Qt::Key_Q);

  QMenu* changes = menuBar()->addMenu(QStringLiteral("D&ocument"));
  QAction* undo = m_undo.createUndoAction(this, QStringLiteral("&Undo"));
  undo->setShortcut(Qt::CTRL | Qt::Key_Z);
  QAction* redo = m_undo.createRedoAction(this, QStringLiteral("&Redo"));
  redo->setShortcuts({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
  changes->addActions({undo, redo});

  buildGoMenu();
  buildServiceMenu();
  menuBar()->addMenu(QStringLiteral("&Help"))->addAction(QStringLiteral("&About"), this, &MainWindow::showAbout);
}

void MainWindow::buildGoMenu() {
  QMenu* go = menuBar()->addMenu(QStringLiteral("&Go"));
  for (int row = 0; row < m_list->count(); ++row) {
    QAction* action = go->addAction(QStringLiteral("&%1 %2").arg(row + 1).arg(m_list->item(row)->text()));
    action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + row)));
    connect(action, &QAction::triggered, this, [this, row] { showPage(static_cast<Page>(row)); });
  }
}

void MainWindow::buildServiceMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("Ser&vice"));
  m_startService = menu->addAction(QStringLiteral("&Start on This Machine"), this, &MainWindow::startLocalService);
  m_stopService = menu->addAction(QStringLiteral("S&top"), this, &MainWindow::stopLocalService);
  m_stopService->setEnabled(false);
}

// --- Pages ----------------------------------------------------------------------------------------------------------

void MainWindow::start() {
  for (const std::string& notice : std::exchange(m_surroundings.notices, {}))
    showNotice(notice);
  if (isServiceMissing())
    m_bar->ask(offer());
  showPage(Page::import);
}

void MainWindow::showPage(Page page) {
  m_list->setCurrentRow(static_cast<int>(page));
  m_stack->currentWidget()->setFocus();
}

void MainWindow::goTo(int row) {
  const Page page = static_cast<Page>(row);
  if (m_stack->currentWidget() == m_editor && page != Page::editor && m_editor->hasChanges())
    tell(QStringLiteral("The changes in %1 are not saved; an import takes the file as it is on the disk")
             .arg(m_editor->fileName()));
  m_stack->setCurrentIndex(row);
  m_undo.setActiveStack(isDocument(page) ? &document(page).undoStack() : nullptr);
  prepare(page);
}

/// Gives the page's panel its mode when the page is first shown: a format file that cannot be read is then told of
/// with a window to be seen, and once a page.
void MainWindow::prepare(Page page) {
  const bool hasPanel = page == Page::import || isDocument(page);
  if (!hasPanel || std::find(m_prepared.begin(), m_prepared.end(), page) != m_prepared.end())
    return;
  m_prepared.push_back(page);
  if (page == Page::import)
    m_importPanel->initializeClientToServer();
  else
    document(page).start();
  passSettings(panelOf(page));
}

/// Opens a file in the editor and shows it there. What waits in the editor to be saved stays, and is shown, where the
/// user does not want to discard it.
template <class Open>
void MainWindow::openInEditor(Page origin, Open&& open) {
  if (m_editor->mayDiscard()) {
    open();
    m_editorOrigin = origin;
  } else {
    tell(QStringLiteral("The file was not opened. These changes are not saved"));
  }
  showPage(Page::editor);
}

/// Leaves the user at the button that comes next.
void MainWindow::returnTo(Page page) {
  showPage(page);
  panelOf(page).findChild<QWidget*>(QStringLiteral("cmdImportExport"))->setFocus();
}

DocumentPage& MainWindow::document(Page page) {
  return *m_documents.at(static_cast<std::size_t>(page) - static_cast<std::size_t>(Page::project));
}

ImExActionCtrl& MainWindow::panelOf(Page page) {
  return page == Page::import ? *m_importPanel : document(page).panel();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(m_editor->mayDiscard());
}

void MainWindow::tell(const QString& text) {
  statusBar()->showMessage(text);
}

// --- Settings and service -------------------------------------------------------------------------------------------

void MainWindow::showSettings() {
  const std::string oldUserId = m_settings.id();
  SettingsDialog dialog(m_settings, this);
  if (dialog.exec() == QDialog::Accepted)
    takeSettings(oldUserId);
}

void MainWindow::takeSettings(const std::string& oldUserId) {
  for (const Page page : m_prepared)
    passSettings(panelOf(page));
  if (!isServiceMissing())
    m_bar->hide();
  if (m_isServiceRunning && oldUserId != m_settings.id())
    startLocalService(); // anew, because it knows one user only
  tell(QStringLiteral("The settings are saved in %1").arg(toQt(m_settings.iniFile())));
}

void MainWindow::passSettings(ImExActionCtrl& panel) const {
  panel.Requestor(toQt(m_settings.name()));
  panel.LoginReqd(false);
  panel.isCentralizedAgent = m_settings.values().isCentralServer;
}

bool MainWindow::isServiceMissing() const {
  return m_settings.securedAddress().empty() || m_settings.unsecuredAddress().empty();
}

void MainWindow::connectService() {
  connect(m_bar, &NoticeBar::accepted, this, &MainWindow::startLocalService);
  connect(&m_service, &LocalService::started, this, &MainWindow::useLocalService);
  connect(&m_service, &LocalService::failed, this, &MainWindow::reportServiceFailure);
}

void MainWindow::startLocalService() {
  m_settings.useLocalService(std::nullopt);
  m_bar->tell(QStringLiteral("The import service is being started ..."));
  m_startService->setEnabled(false);
  m_stopService->setEnabled(true);
  m_isServiceRunning = true;
  m_service.start({m_surroundings.serviceProgram, toQt(m_settings.path()),
                   QDir(m_surroundings.dataDirectory).filePath(QStringLiteral("import-service.db")),
                   toQt(m_settings.id())});
}

void MainWindow::stopLocalService() {
  m_service.stop();
  m_settings.useLocalService(std::nullopt);
  m_startService->setEnabled(true);
  m_stopService->setEnabled(false);
  m_isServiceRunning = false;
  m_bar->hide();
  tell(QStringLiteral("The import service of this machine is stopped"));
}

void MainWindow::useLocalService(const ServiceAddresses& addresses) {
  m_settings.useLocalService(addresses);
  m_bar->hide();
  tell(QStringLiteral("The import service of this machine is ready: %1").arg(toQt(addresses.secured)));
}

void MainWindow::reportServiceFailure(const QString& why) {
  stopLocalService();
  if (isServiceMissing())
    m_bar->ask(offer());
  showNotice("The import service of this machine does not work: " + toCore(why));
}

void MainWindow::showAbout() {
  QMessageBox::about(
      this, QStringLiteral("Corvana"),
      QStringLiteral("corvana-desk %1\nImports files into Corvana.").arg(QStringLiteral(CORVANA_DESK_VERSION)));
}

} // namespace imex::desk
