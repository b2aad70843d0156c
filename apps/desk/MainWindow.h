#pragma once

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"
#include "desk/DeskSettings.h"
#include "desk/DocumentPage.h"
#include "desk/DocumentsPage.h"
#include "desk/EditorPage.h"
#include "desk/LocalService.h"
#include "desk/NoticeBar.h"

#include <QListWidget>
#include <QMainWindow>
#include <QStackedWidget>
#include <QUndoGroup>

#include <array>
#include <string>
#include <vector>

namespace imex::desk {

/// The pages of the window, in the order of the list and of the keys Ctrl+1, Ctrl+2 ...
enum class Page { import, project, quote, order, editor, documents, jobLog };

/// What the window finds on this machine.
struct Surroundings {
  QString serviceProgram;                ///< of the local import service
  QString dataDirectory;                 ///< where it keeps its store
  std::vector<std::string> notices = {}; ///< what went wrong before there was a window; shown first
};

/// The host's window: a list of pages at the left, the page at the right. It answers the signals of all panels, and
/// offers to start an import service on this machine where none is set.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// `settings` outlives the window. The host's services are installed before start().
  MainWindow(DeskSettings& settings, Surroundings surroundings);
  ~MainWindow() override;

  /// Tells what there is to tell, and makes the first page ready. Called once, when the window is shown.
  void start();

  void showPage(Page page);

 protected:
  /// Asks first where something in the editor waits to be saved.
  void closeEvent(QCloseEvent* event) override;

 private:
  // Construction
  void buildPages();
  void buildMenus();
  void buildGoMenu();
  void buildServiceMenu();
  QWidget* inScrollArea(QWidget& page);
  void addPage(const QString& name, QWidget* page);
  void connectPanel(Page page);
  void connectEditing(Page page);
  void connectReturns();
  void connectService();

  // Pages
  void goTo(int row);
  void prepare(Page page);
  bool isDocument(Page page) const { return page >= Page::project && page <= Page::order; }
  DocumentPage& document(Page page);
  template <class Open>
  void openInEditor(Page origin, Open&& open);
  void returnTo(Page page);
  ImExActionCtrl& panelOf(Page page);
  void tell(const QString& text);

  // Settings and service
  void showSettings();
  void takeSettings(const std::string& oldUserId);
  void passSettings(ImExActionCtrl& panel) const;
  bool isServiceMissing() const;
  void startLocalService();
  void stopLocalService();
  void useLocalService(const ServiceAddresses& addresses);
  void reportServiceFailure(const QString& why);

  void showAbout();

  DeskSettings& m_settings;
  Surroundings m_surroundings;
  QListWidget* m_list;
  QStackedWidget* m_stack;
  NoticeBar* m_bar;
  ImExActionCtrl* m_importPanel;
  std::array<DocumentPage*, 3> m_documents; ///< project, quote, order
  EditorPage* m_editor;
  DocumentsPage* m_docs;
  ImtExViewCtrl* m_jobLog;
  Page m_editorOrigin = Page::import; ///< whose panel opened what is in the editor
  Page m_docsOrigin = Page::import;
  std::vector<Page> m_prepared; ///< whose panels have had their mode call
  QUndoGroup m_undo;
  QAction* m_startService = nullptr;
  QAction* m_stopService = nullptr;
  LocalService m_service;
  bool m_isServiceRunning = false;
};

} // namespace imex::desk
