// SPDX-License-Identifier: MIT
#include "app/CMainDialog.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/CAboutDlg.h"
#include "app/CHomePage.h"
#include "app/CProblemLine.h"
#include "app/HelpFile.h"
#include "app/MainMenu.h"
#include "app/Profile.h"
#include "devlink/Detection.h"
#include "devlink/DeviceText.h"
#include "firmware/RestartCommand.h"
#include "pages/common/Vendor.h"
#include "pages/digital/CDigitalPageSets.h"
#include "pages/joystick/CJoystickPageSet.h"
#include "pages/nodes/CNodePortPageSet.h"
#include "pages/nodes/CNodeSystemPageSet.h"
#include "pages/nodes/CSpiControllerPageSet.h"
#include "res/Icons.h"
#include "tree/CDeviceTreeCtrl.h"
#include "update/WaitCursor.h"

namespace quillon {
namespace {

// Firmware first, so that a board that works is the one selected.
constexpr std::uint32_t kDetectionOrder[]{KVUSB_TYPE_FIRMWARE, KVUSB_TYPE_LOADER,
                                          KVUSB_TYPE_FIRMWARE_ID};

constexpr QSize kLeastSize(640, 420);

}  // namespace

CMainDialog::CMainDialog(const MainServices& services)
    : services_(services),
      run_(services.link.gate),
      checks_(services.link.table, services.prompts, services.updates),
      tree_(new CDeviceTreeCtrl(services.link)),
      pages_(new QStackedWidget),
      problem_line_(new CProblemLine(services.access)) {
  setWindowTitle(QStringLiteral("Quillon"));
  setWindowIcon(Icon("app"));
  auto* const splitter = new QSplitter;
  splitter->addWidget(tree_);
  splitter->addWidget(pages_);
  splitter->setStretchFactor(1, 1);
  splitter->setChildrenCollapsible(false);
  auto* const body = new QWidget;
  auto* const layout = new QVBoxLayout(body);
  layout->addWidget(problem_line_);
  layout->addWidget(splitter, 1);
  setCentralWidget(body);

  CreateMenu();
  AddAboutToSystemMenu();
  CreatePageSets();
  connect(&run_, &StackRun::Begun, this, &CMainDialog::OnRunStarted);
  connect(&run_, &StackRun::Ended, this, &CMainDialog::OnRunEnded);
  connect(problem_line_, &CProblemLine::RuleInstalled, this,
          [this] { services_.link.gate.Request(); });
  tree_->SetNodeReader([this] { return ReadNodes(); });
  connect(tree_, &CDeviceTreeCtrl::BoardSelected, this, &CMainDialog::SelectFamilyPages);
  connect(tree_, &CDeviceTreeCtrl::PortSelected, this, &CMainDialog::ShowPort);
  connect(tree_, &CDeviceTreeCtrl::RefreshRequested, this, &CMainDialog::Redetect);
  connect(tree_, &CDeviceTreeCtrl::LoadDefaultsRequested, this, &CMainDialog::LoadDefaultSettings);
  connect(tree_, &CDeviceTreeCtrl::RestartRequested, this, &CMainDialog::RestartBoard);
  connect(tree_, &CDeviceTreeCtrl::FirmwareCheckRequested, this,
          [this] { CheckForUpdates(kFirmwareList); });
  // A timer, because it fires once however many events come, and because the event loop handles
  // input before it. Posted events would all run before the next click.
  detection_timer_.setSingleShot(true);
  connect(&detection_timer_, &QTimer::timeout, this, &CMainDialog::RunWaitingDetection);
  services_.link.gate.SetAction([this] { detection_timer_.start(); });
  SetSizes(*splitter);
}

void CMainDialog::SetSizes(QSplitter& splitter) {
  // On a small screen with some room left for the frame.
  const QSize room = screen()->availableSize() * 0.95;
  // Set explicitly, or a page that needs more would widen the window when it is first shown.
  const QSize least = kLeastSize.boundedTo(room);
  setMinimumSize(least);
  const QMargins margins = centralWidget()->layout()->contentsMargins();
  pages_->setMinimumWidth(least.width() - margins.left() - margins.right() -
                          splitter.handleWidth() - tree_->minimumSizeHint().width());
  // Wide enough for the boards' names, in bold too, and for all tabs of the family with the most.
  const int character = fontMetrics().averageCharWidth();
  const QSize whole(character * 218, fontMetrics().lineSpacing() * 44);
  resize(whole.boundedTo(room));
  const int tree = std::min(character * 66, width() * 66 / 214);
  splitter.setSizes({tree, width() - tree});
}

// The gate outlives the window.
CMainDialog::~CMainDialog() { services_.link.gate.SetAction({}); }

void CMainDialog::CreateMenu() {
  const MainMenuHandlers handlers{
      .exit = [this] { close(); },
      .check_program = [this] { CheckForUpdates(kProgramList); },
      .check_firmware = [this] { CheckForUpdates(kFirmwareList); },
      .toggle_auto_update = [this](bool on) { SetAutoUpdate(on); },
      .help = [this] { OpenHelp(); },
      .about = [this] { ShowAbout(); },
  };
  FillMainMenu(*menuBar(), handlers, services_.profile.AutoUpdate() != 0);
  OfferFirmwareCheck(*menuBar(), false);
}

// Any number but 0 means yes. Switching the option on again restores the number that was there.
void CMainDialog::SetAutoUpdate(bool on) {
  if (const int former = services_.profile.AutoUpdate(); former != 0) auto_update_when_on_ = former;
  options_.auto_update = on ? auto_update_when_on_ : 0;
  services_.profile.SetAutoUpdate(options_.auto_update);
}

void CMainDialog::CreatePageSets() {
  const PageContext context{services_.link, services_.prompts, run_};
  const auto add = [&](BoardFamily family, CPageSet* set) {
    page_sets_[family] = set;
    pages_->addWidget(set);
    connect(set, &CPageSet::RefreshRequested, this, &CMainDialog::Redetect);
  };
  add(BoardFamily::kJoystick, new CJoystickPageSet(context, BoardFamily::kJoystick));
  add(BoardFamily::kDigitalPorts, new CDigitalPortsPageSet(context));
  add(BoardFamily::kInputBanks, new CDigitalInputBankPageSet(context));
  node_pages_ = new CNodeSystemPageSet(context);
  add(BoardFamily::kNodeSystem, node_pages_);
  port_pages_ = new CNodePortPageSet(context);
  pages_->addWidget(port_pages_);
  connect(port_pages_, &CTabSet::RefreshRequested, this, &CMainDialog::Redetect);
  add(BoardFamily::kScanMatrix, new CJoystickPageSet(context, BoardFamily::kScanMatrix));
  add(BoardFamily::kSmallJoystick, new CJoystickPageSet(context, BoardFamily::kSmallJoystick));
  add(BoardFamily::kSpi, new CSpiControllerPageSet(context));
  home_ = new CHomePage;
  home_->setObjectName(QStringLiteral("home"));
  connect(home_, &CHomePage::RefreshRequested, this, &CMainDialog::Redetect);
  connect(home_, &CHomePage::UpdatesRequested, this, [this] { CheckForUpdates(kProgramList); });
  connect(home_, &CHomePage::HelpRequested, this, &CMainDialog::OpenHelp);
  connect(home_, &CHomePage::WebSiteRequested, this, &CMainDialog::VisitVendor);
  pages_->addWidget(home_);
  empty_page_ = new QWidget;
  pages_->addWidget(empty_page_);
  pages_->setCurrentWidget(home_);
}

void CMainDialog::Initialise() {
  if (closing_hold_ || std::exchange(initialised_, true)) return;
  Redetect();
  const bool registered = services_.notifier.Start(
      [this](std::uint32_t event, std::uint32_t device_type, std::string_view path) {
        OnDeviceChange(event, device_type, path);
      });
  if (!registered) return;
  options_ = {services_.profile.AutoConnect(), services_.profile.AutoUpdate()};
  // Without an address nobody has asked for anything that could be done.
  if (options_.auto_update != 0 && !UpdateAddress(kProgramList).isEmpty()) {
    CheckForUpdates(kProgramList);
  }
}

void CMainDialog::OnDeviceChange(std::uint32_t event, std::uint32_t device_type,
                                 std::string_view path) {
  if (IsBoardChange(event, device_type, path)) services_.link.gate.Request();
}

void CMainDialog::RunWaitingDetection() {
  if (close_after_run_) return;
  if (services_.link.gate.IsOpen()) {
    Redetect();
  } else {
    // Something has entered the gate since; then the detection waits for that too.
    services_.link.gate.Request();
  }
}

void CMainDialog::Redetect() {
  const auto hold = services_.link.gate.TryEnter();
  if (!hold) return;
  const QPointer<QWidget> focus(focusWidget());
  CloseAllBoards();
  services_.link.table.Clear();
  tree_->Rebuild();
  home_->ShowSearch();
  repaint();
  // A view notes that its model has changed, and paints it only when the event loop turns.
  tree_->viewport()->repaint();
  services_.settle();
  DetectAllTypes();
  services_.notifier.Deliver();
  for (const auto& [family, set] : page_sets_) set->ResetIndicators();
  port_pages_->ResetIndicators();
  tree_->Rebuild();
  // A page that was hidden meanwhile has lost the focus, which users of the keyboard need.
  QWidget* const next = focus && focus->isVisible() && focus->isEnabled() ? focus : tree_;
  next->setFocus();
}

void CMainDialog::DetectAllTypes() {
  auto& [library, table, gate] = services_.link;
  reported_boards_ = 0;
  for (const std::uint32_t type : kDetectionOrder) {
    reported_boards_ += DetectBoards(library, table, type).reported;
  }
  ShowProblems();
}

void CMainDialog::ShowProblems() {
  auto& [library, table, gate] = services_.link;
  QString general = QString::fromStdString(ShownText(library.DescribeProblem(nullptr).sentence));
  if (reported_boards_ > table.Count()) {
    if (!general.isEmpty()) general += QLatin1Char('\n');
    general += tr("The HID library reports %1 boards, but Quillon lists %2 at most. The others are "
                  "not shown.")
                   .arg(reported_boards_)
                   .arg(DeviceTable::kRoom);
  }
  problem_line_->Show(general, table);
}

void CMainDialog::CloseAllBoards() {
  if (CloseBoards(services_.link.library, services_.link.table)) return;
  services_.prompts.Message(this,
                            QStringLiteral("An error occured while attempting to close device!"),
                            QStringLiteral("Close Device Failed"), UserPrompts::Icon::kExclamation);
}

// A record of an empty table says nothing, whatever a library wrote there.
const Product& CMainDialog::CurrentProduct() const {
  const DeviceTable& table = services_.link.table;
  return ProductOf(table.IsEmpty() ? 0 : table.CurrentRecord().product_id);
}

void CMainDialog::SelectFamilyPages() {
  const BoardFamily family = CurrentProduct().family;
  const auto set = page_sets_.find(family);
  OfferFirmwareCheck(*menuBar(), !services_.link.table.IsEmpty());
  const auto answers = std::exchange(node_answers_, {});
  if (set != page_sets_.end()) {
    pages_->setCurrentWidget(set->second);
    const auto answer = answers.find(services_.link.table.Current());
    set->second->ShowBoard(answer == answers.end() ? std::nullopt : std::optional(answer->second));
    return;
  }
  home_->ShowBoardCount(services_.link.table.Count());
  pages_->setCurrentWidget(family == BoardFamily::kWithoutPages ? empty_page_ : home_);
}

// The tree has made the port's board current.
void CMainDialog::ShowPort(int port) {
  pages_->setCurrentWidget(port_pages_);
  port_pages_->ShowPort(port);
}

// The pages whose defaults "Load default settings" loads for the chosen item; null if it has none.
CTabSet* CMainDialog::ChosenPages() const {
  if (tree_->ChosenPort() != 0) return port_pages_;
  const auto set = page_sets_.find(CurrentProduct().family);
  return set == page_sets_.end() ? nullptr : set->second;
}

// A board that does not answer keeps everybody waiting. So the answer is kept for the report on the
// board that will be selected.
NodeList CMainDialog::ReadNodes() {
  auto& [library, table, gate] = services_.link;
  node_answers_[table.Current()] = QueryNodesUnlessRestarting(library, table);
  if (table.IsRestarting(table.Current())) return {};
  // Without an answer the nodes are those of the answer before, as on all pages.
  NodeList present;
  for (const NodeRecord& node : table.CurrentNodes()) present.push_back(node.IsActive());
  return present;
}

CTabSet* CMainDialog::ShownPageSet() const {
  return qobject_cast<CTabSet*>(pages_->currentWidget());
}

// One hold from the question to the rebuilt tree: a board that comes or goes meanwhile must not put
// another one in the place of the one that the user said Yes for.
void CMainDialog::LoadDefaultSettings() {
  const auto hold = services_.link.gate.TryEnter();
  if (!hold) return;
  if (services_.prompts.AskYesNo(
          this,
          QStringLiteral("Are you sure you want to load the\r\ndefault settings for this item?"),
          QStringLiteral("Load Defaults"), UserPrompts::Icon::kQuestion)) {
    CTabSet* const pages = ChosenPages();
    if (CurrentProduct().defaults_from_tree && pages != nullptr) pages->LoadDeviceDefaults();
  }
  tree_->Rebuild();
}

// The board leaves the bus and comes back; its notifications wait for the end of the hold.
void CMainDialog::RestartBoard(bool to_flash_mode) {
  auto& [library, table, gate] = services_.link;
  const auto hold = gate.TryEnter();
  if (!hold) return;
  const Product& product = CurrentProduct();
  if (page_sets_.contains(product.family)) {
    const auto button = to_flash_mode ? RestartButton::kFlash : RestartButton::kDevice;
    SendRestart(library, table.CurrentRecord(),
                RestartCommand(button, table.CurrentType(), product));
    table.SetCurrentRestarting();
  }
  tree_->Rebuild();
}

void CMainDialog::OnRunStarted() {
  tree_->setEnabled(false);
  grayed_ = GrayMainMenu(*menuBar());
}

void CMainDialog::OnRunEnded() {
  tree_->setEnabled(true);
  for (QAction* const item : std::exchange(grayed_, {})) item->setEnabled(true);
  CloseIfWanted();
}

void CMainDialog::CloseIfWanted() {
  if (close_after_run_) QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

// One hold for all: the nodes asked for are those of the board that the check was about.
void CMainDialog::CheckForUpdates(int list) {
  const auto hold = services_.link.gate.TryEnter();
  if (!hold) return;
  checks_.CheckForUpdates(list);
  if (list == kFirmwareList && CurrentProduct().family == BoardFamily::kNodeSystem) {
    CheckNodeFirmware();
  }
  CloseIfWanted();
}

// Only a list that was read may change what the lists of nodes and cards show.
void CMainDialog::CheckNodeFirmware() {
  if (close_after_run_ || !checks_.CheckForUpdates(kNodeList)) return;
  node_pages_->RefreshNodes();
  if (ShownPageSet() == port_pages_) port_pages_->FollowNode();
}

void CMainDialog::OpenHelp() {
  const auto hold = services_.link.gate.TryEnter();
  if (!hold) return;
  if (OpenHelpFile(services_.open_document)) return;
  services_.prompts.Message(this, QStringLiteral("The help file could not be located!"),
                            QStringLiteral("Quillon: Help File"), UserPrompts::Icon::kNone);
}

// Intended: a browser that cannot be started is no reason for a message.
void CMainDialog::VisitVendor() {
  const auto hold = services_.link.gate.TryEnter();
  if (!hold) return;
  const WaitCursor wait;
  services_.updates.open_in_browser(QStringLiteral("https://") + VendorWebSite());
}

void CMainDialog::ShowAbout() {
  const auto hold = services_.link.gate.TryEnter();
  if (hold) CAboutDlg(this).exec();
}

void CMainDialog::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (!initialised_) QTimer::singleShot(0, this, &CMainDialog::Initialise);
}

void CMainDialog::closeEvent(QCloseEvent* event) {
  if (run_.IsUnderWay()) {
    close_after_run_ = true;
    run_.StopRun();
  }
  if (checks_.IsWaiting()) {
    close_after_run_ = true;
    checks_.Abandon();
  }
  if (!services_.link.gate.IsOpen()) {
    // Not the end after all, so what waited for it is still wanted.
    if (!run_.IsUnderWay() && !checks_.IsWaiting() && std::exchange(close_after_run_, false))
      services_.link.gate.Request();
    event->ignore();
    return;
  }
  // For good: a board that comes now, while a box is open too, must not be found and opened again.
  closing_hold_.emplace(services_.link.gate.Enter());
  CloseAllBoards();
  event->accept();
}

}  // namespace quillon
