// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <map>
#include <optional>

#include "app/Elevated.h"
#include "devlink/DeviceNotifier.h"
#include "devlink/Products.h"
#include "firmware/NodeStatus.h"
#include "pages/common/PageContext.h"
#include "pages/common/StackRun.h"
#include "tree/DeviceTreeModel.h"
#include "update/UpdateChecks.h"

class QAction;
class QSplitter;
class QStackedWidget;

namespace quillon {

class CDeviceTreeCtrl;
class CHomePage;
class CNodePortPageSet;
class CNodeSystemPageSet;
class CPageSet;
class CProblemLine;
class CTabSet;
class Profile;

// What the main window is given. All of it outlives the window.
struct MainServices {
  BoardLink& link;
  UserPrompts& prompts;
  DeviceNotifier& notifier;
  Profile& profile;
  // Waits until boards that have just been plugged in can be found.
  std::function<void()> settle;
  UpdateServices updates;
  // Opens a document with the user's program for it; returns whether it could.
  std::function<bool(const QString& path)> open_document;
  // Help with boards that this user may not open. Without it none is offered.
  AccessHelp access{};
};

// The options. They have their defaults until the start has read them.
struct StartOptions {
  int auto_connect = 1;
  int auto_update = 1;
  bool operator==(const StartOptions&) const = default;
};

// The main window: the tree of boards on the left, the pages of the current one on the right.
// Closing it during a flash update or a check for updates ends that first; then the window closes.
class CMainDialog : public QMainWindow {
  Q_OBJECT

 public:
  explicit CMainDialog(const MainServices& services);
  ~CMainDialog() override;

  // The first detection, the registration for hot-plug events, the options, and the check for a new
  // version if the user has it. Runs by itself once the window has been painted, so that the user
  // sees a window during the wait. Only the first call does anything.
  void Initialise();

  // Closes all boards and finds them anew; board 0 is current then. Does nothing while something
  // else holds the gate.
  void Redetect();

  // Shows again what keeps boards from working: what the last detection found, and what the library
  // says now. Talks to no board.
  void ShowProblems();

  // Takes a hot-plug event. One that is about our boards leads to a detection as soon as the gate
  // is open. However many come, at most one detection waits, and the user's input goes first.
  void OnDeviceChange(std::uint32_t event, std::uint32_t device_type, std::string_view path);

  // The pages shown for the current board or one of its ports; null while the home page or nothing
  // is.
  CTabSet* ShownPageSet() const;
  CDeviceTreeCtrl& Tree() const { return *tree_; }
  const StartOptions& Options() const { return options_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
#ifdef _WIN32
  bool nativeEvent(const QByteArray& type, void* message, qintptr* result) override;
#endif

 private:
  void CreateMenu();
  void SetAutoUpdate(bool on);
  void CreatePageSets();
  void SetSizes(QSplitter& splitter);
  void AddAboutToSystemMenu();
  void RunWaitingDetection();
  void CloseAllBoards();
  void DetectAllTypes();
  const Product& CurrentProduct() const;
  void SelectFamilyPages();
  NodeList ReadNodes();
  void ShowPort(int port);
  CTabSet* ChosenPages() const;
  void LoadDefaultSettings();
  void RestartBoard(bool to_flash_mode);
  void OnRunStarted();
  void OnRunEnded();
  void CheckForUpdates(int list);
  void CheckNodeFirmware();
  void OpenHelp();
  void VisitVendor();
  void ShowAbout();
  void CloseIfWanted();

  MainServices services_;
  StackRun run_;
  UpdateChecks checks_;
  CDeviceTreeCtrl* tree_;
  QStackedWidget* pages_;
  CProblemLine* problem_line_;
  CNodeSystemPageSet* node_pages_ = nullptr;
  CNodePortPageSet* port_pages_ = nullptr;
  CHomePage* home_ = nullptr;
  QWidget* empty_page_ = nullptr;
  std::map<BoardFamily, CPageSet*> page_sets_;
  // By table index; what boards answered to the rebuild of the tree that is under way.
  std::map<std::uint32_t, NodeStatusAnswer> node_answers_;
  QTimer detection_timer_;        // active while a detection waits for the event loop
  QList<QAction*> grayed_;        // of the menu, to be enabled again after the run
  bool close_after_run_ = false;  // or after the check for updates
  bool initialised_ = false;
  std::uint64_t reported_boards_ = 0;               // by the last detection
  std::optional<ExchangeGate::Hold> closing_hold_;  // from the closing of the window on
  StartOptions options_;
  int auto_update_when_on_ = 1;  // the number that stands for yes in the profile
};

}  // namespace quillon
