// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>
#include <algorithm>
#include <memory>

#include "firmware/NodeStatus.h"
#include "pages/common/CSettingsPage.h"
#include "pages/digital/CDigitalPageSets.h"
#include "pages/joystick/CJoystickPageSet.h"
#include "pages/nodes/CDirectOutputPage.h"
#include "pages/nodes/CGlcdPage.h"
#include "pages/nodes/CIoPortPage.h"
#include "pages/nodes/CSpiControllerPageSet.h"
#include "pages/nodes/CSpiDacPage.h"
#include "settings/NodeSettings.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CEditMark.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

// What holds for every settings page, whatever it is about.
namespace quillon::testing {
namespace {

// The pages of a node system's board and those of its port B, behind a tab that is none.
struct NodeTabs : CTabSet {
  explicit NodeTabs(PageContext context) : CTabSet(context, nullptr) {
    QueryNodeStatus(context.link.library, context.link.table);
    AddTab("tab-node", {}, [] { return new QWidget; });
    AddPage<CIoPortsPage>(NodeSystemPages().front(), "tab-ports");
    AddPage<CIoPortPage>(*FindPortPage("io_port"), "tab-ports");
    AddPage<CDirectOutputPage>(*FindPortPage("direct_outputs"), "tab-ports");
    AddPage<CGlcdPage>(*FindPortPage("glcd"), "tab-ports");
    AddPage<CSpiDacPage>(*FindPortPage("spi_dac"), "tab-ports");
    for (int tab = 2; tab < count(); ++tab) Page(tab)->SetPort(2);
  }
};
// The ports of the nodes that are there; the others are left out.
constexpr int kPortsThere = 12;

// The tabs of a family's boards.
std::unique_ptr<CTabSet> MakeTabs(PageContext context, BoardFamily family) {
  switch (family) {
    case BoardFamily::kJoystick:
    case BoardFamily::kSmallJoystick:
    case BoardFamily::kScanMatrix:
      return std::make_unique<CJoystickPageSet>(context, family);
    case BoardFamily::kDigitalPorts:
      return std::make_unique<CDigitalPortsPageSet>(context);
    case BoardFamily::kInputBanks:
      return std::make_unique<CDigitalInputBankPageSet>(context);
    case BoardFamily::kSpi:
      return std::make_unique<CSpiControllerPageSet>(context);
    case BoardFamily::kNodeSystem:
      return std::make_unique<NodeTabs>(context);
    default:
      return nullptr;
  }
}

sim::Board& BoardOf(SimProgram& program, const Product& product) {
  const sim::Rig rig = sim::DefaultRig();
  const auto spec = std::ranges::find(rig.boards, product.id, &sim::BoardSpec::product);
  return *program.bus.Find(spec->id);
}

// A new page over a board as it left the factory.
struct OnePage {
  OnePage(const Product& product, int tab)
      : program(product.id),
        pages(MakeTabs(program.fixture.Context(), product.family)),
        page(*pages->Page(tab)) {
    for (int i = 1; i < pages->count(); ++i) pages->setTabEnabled(i, true);
  }

  // One edit, of what comes in the page's last exchange. The second one sets it back. False where
  // there is nothing to choose.
  bool Edit() const {
    if (auto* const grid = page.findChild<CSettingsGrid*>()) {
      const bool ports = page.Values().Of().about == About::kAllPorts;
      const int last = ports ? kPortsThere : grid->Rows() - 1;
      for (int column = grid->Columns() - 1; column > 0; --column) {
        for (int row = last; row > 0; --row) {
          if (!grid->IsEnabledCell(row, column) || !IsToggle(grid->Kind(row, column))) continue;
          grid->Click(row, column);
          return true;
        }
      }
      const int column = grid->Columns() - 1;
      const auto offers = OffersOf(page.Values().SettingOf(*grid->CellAt(last, column)));
      const bool second = grid->Value(last, column) == offers[0].code;
      grid->Enter(last, column, QString::fromStdString(offers[second ? 1 : 0].text));
      return true;
    }
    if (auto* const number = page.findChild<QSpinBox*>()) {
      number->setValue(77 - number->value());
      return true;
    }
    auto* const box = page.findChild<QCheckBox*>();
    if (box != nullptr) box->click();
    return box != nullptr;
  }

  // How many cells and controls are marked as edited.
  int Marks() const {
    int marks = 0;
    for (const auto* const mark : page.findChildren<CEditMark*>()) marks += !mark->isHidden();
    for (const auto* const grid : page.findChildren<CGridCtrl*>()) {
      for (int row = 1; row < grid->Rows(); ++row) {
        for (int column = 1; column < grid->Columns(); ++column)
          marks += grid->IsMarked(row, column);
      }
    }
    return marks;
  }

  // The commands of the exchanges that a button leads to, one for each packet.
  std::vector<std::uint8_t> Press(const char* button) {
    std::vector<std::uint8_t> commands;
    for (int command = 0; command < 256; ++command) {
      const auto code = static_cast<std::uint8_t>(command);
      program.library.BeforeWrite({.command = code, .onwards = true},
                                  [&commands, code] { commands.push_back(code); });
    }
    Button(page, button).click();
    program.library.DropUnstruck();
    return commands;
  }

  SimProgram program;
  std::unique_ptr<CTabSet> pages;
  CSettingsPage& page;
};

// The first product of each family whose pages are known.
std::vector<Product> OneProductAFamily() {
  std::vector<Product> products;
  for (const Product& product : Products()) {
    const bool known =
        std::ranges::find(products, product.family, &Product::family) != products.end();
    if (!known && !PagesOf(product.family).empty()) products.push_back(product);
  }
  return products;
}

template <typename Claim>
void ForEveryPage(const Claim& claim) {
  for (const Product& product : OneProductAFamily()) {
    const int tabs = OnePage(product, 1).pages->count();
    for (int tab = 1; tab < tabs; ++tab) {
      SCOPED_TRACE(::testing::Message() << std::hex << product.id << ", tab " << tab);
      claim(product, tab);
    }
  }
}

// A fault of the n-th packet.
enum Fault { kWriteFails, kReadFails, kWrongEcho };
void Plant(FaultyLibrary& library, Fault fault, std::size_t n) {
  const FaultyLibrary::Which nth{.nth = static_cast<int>(n)};
  if (fault == kWriteFails) library.FailWrite(nth);
  if (fault == kReadFails) library.FailRead(nth);
  if (fault == kWrongEcho) library.AnswerWithEcho(nth, 0xEE);
}

// The input banks' header.
bool IsUnchecked(const Product& product, std::uint8_t command) {
  return product.family == BoardFamily::kInputBanks && command == 0x10;
}

}  // namespace

TEST(EveryPage, StopsAtTheExchangeThatFailsAndKeepsWhatItShows) {
  ForEveryPage([](const Product& product, int tab) {
    for (const char* button : {"Retrieve", "Update"}) {
      const bool retrieve = button[0] == 'R';
      const auto commands = OnePage(product, tab).Press(button);
      ASSERT_FALSE(commands.empty());
      // The blocks of nodes are a packet each, all with one command.
      const bool of_nodes = product.family == BoardFamily::kNodeSystem;
      for (std::size_t n = 1; n <= commands.size(); ++n) {
        const bool last_of_block =
            of_nodes || n == commands.size() || commands[n] != commands[n - 1];
        const bool first_block =
            of_nodes ? n == 1
                     : std::all_of(commands.begin(), commands.begin() + std::ptrdiff_t(n),
                                   [&](auto code) { return code == commands[0]; });
        for (const Fault fault : {kWriteFails, kReadFails, kWrongEcho}) {
          // A query leaves the judgement to its read, and a block to its last packet's echo.
          // A block whose answer nobody looks at fails in silence.
          if ((fault == kWriteFails && retrieve) || (fault == kWrongEcho && !last_of_block) ||
              (!retrieve && IsUnchecked(product, commands[n - 1])))
            continue;
          SCOPED_TRACE(::testing::Message() << button << ", packet " << n << ", fault " << fault);
          OnePage one(product, tab);
          Button(one.page, "Retrieve").click();
          const bool edited = one.Edit();
          const auto before = ShownBy(one.page);
          Plant(one.program.library, fault, n);
          EXPECT_EQ(one.Press(button).size(), n - (fault == kWriteFails)) << "and sends no more";
          EXPECT_TRUE(Lamp(one.page, "Error").IsBlinking());
          EXPECT_FALSE(Lamp(one.page, "Busy").IsLit());
          EXPECT_EQ(ShownBy(one.page), before);
          const bool in_part = !first_block || (!retrieve && n > 1);
          const char* const origin = retrieve ? "Retrieved in part only" : "Stored in part only";
          EXPECT_TRUE(OriginOf(one.page).startsWith(in_part ? origin : "Retrieved from"));
          EXPECT_EQ(OriginOf(one.page).endsWith("Edited since."), edited)
              << "the edit is still one";
          one.pages->ResetIndicators();
          EXPECT_FALSE(Lamp(one.page, "Error").IsLit() || Lamp(one.page, "Error").IsBlinking());
          if (retrieve) continue;
          // "Load default settings" goes by what this returns.
          OnePage other(product, tab);
          Plant(other.program.library, fault, n);
          EXPECT_EQ(other.page.StoreOnBoard(),
                    fault == kWrongEcho && other.page.Values().Of().answered_is_done);
        }
      }
    }
  });
}

TEST(EveryPage, OfSpiControllersKeepsTheErrorLampLitUntilARetrieve) {
  OnePage spi(ProductOf(0x1500), 1);
  const CStatusLed& error = Lamp(spi.page, "Error");
  spi.program.library.AnswerWithEcho({}, 0xEE);
  EXPECT_TRUE(spi.page.StoreOnBoard()) << "it was answered";
  spi.page.Update();
  EXPECT_TRUE(OriginOf(spi.page).startsWith("Stored in"));
  EXPECT_TRUE(error.IsBlinking());
  spi.page.Retrieve();
  EXPECT_FALSE(error.IsLit());
}

TEST(EveryPage, MarksAnEditUntilItIsSetBackOrStored) {
  ForEveryPage([](const Product& product, int tab) {
    const OnePage one(product, tab);
    const auto expect = [&](const char* origin, int marks) {
      EXPECT_TRUE(OriginOf(one.page).startsWith(origin)) << OriginOf(one.page).toStdString();
      EXPECT_EQ(OriginOf(one.page).endsWith("Edited since."), marks > 0);
      EXPECT_EQ(one.Marks(), marks);
    };
    const bool editable = one.Edit();
    expect("Not retrieved from the board yet.", 0);
    Button(one.page, "Retrieve").click();
    // A value that goes back as another code than it came is marked, but no edit.
    const int held = one.Marks();
    EXPECT_EQ(held, product.family == BoardFamily::kDigitalPorts);
    for (const int edits : {1, 0, 1}) {
      if (!editable) break;
      one.Edit();
      EXPECT_EQ(OriginOf(one.page).endsWith("Edited since."), edits == 1);
      EXPECT_EQ(one.Marks(), held + edits);
    }
    Button(one.page, "Update").click();
    expect("Stored in", 0);
  });
}

TEST(EveryPage, AsksBeforeDefaultsWhichItDoesNotSendAndDoesNothingWhileTheGateIsHeld) {
  ForEveryPage([](const Product& product, int tab) {
    OnePage one(product, tab);
    const bool editable = one.Edit();
    const auto edited = ShownBy(one.page);
    {
      const auto hold = one.program.fixture.link.gate.Enter();
      for (const char* const button : {"Retrieve", "Update", "Defaults"})
        EXPECT_TRUE(one.Press(button).empty()) << button;
    }
    EXPECT_FALSE(Lamp(one.page, "Error").IsLit());
    for (const bool yes : {false, true}) {
      EXPECT_EQ(ShownBy(one.page), edited);
      one.program.fixture.prompts.ExpectQuestion(
          "Are you sure you want to load the\r\ndefault settings for this page?", "Load Defaults",
          yes);
      EXPECT_TRUE(one.Press("Defaults").empty());
    }
    EXPECT_EQ(ShownBy(one.page) != edited, editable);
  });
}

TEST(EveryPage, SendsBackTheBytesThatCame) {
  for (const Product& product : OneProductAFamily()) {
    SimProgram program(product.id);
    const auto pages = MakeTabs(program.fixture.Context(), product.family);
    const sim::BoardState& state = BoardOf(program, product).State();
    const sim::Nodes nodes = state.nodes;
    auto sent = state.blocks;
    if (sent.contains("expansion")) sent["expansion"][0] &= 1;  // the rest has no meaning
    // No damping; the bytes are always sent as 0.
    if (product.family == BoardFamily::kSmallJoystick) sent["hat"][1] = sent["hat"][3] = 0;
    // Port 4 is Rotary, which goes back as another code than it came.
    if (product.family == BoardFamily::kDigitalPorts) sent["ports"][8] ^= 0x10;
    for (int tab = 1; tab < pages->count(); ++tab) {
      pages->Page(tab)->Retrieve();
      pages->Page(tab)->Update();
      EXPECT_TRUE(OriginOf(*pages->Page(tab)).startsWith("Stored in")) << tab;
    }
    for (const auto& [name, bytes] : sent) EXPECT_EQ(state.blocks.at(name), bytes) << name;
    for (std::size_t node = 0; node < nodes.size(); ++node)
      EXPECT_EQ(state.nodes[node].memory, nodes[node].memory) << node;
  }
}

TEST(EveryPage, ShowsEverySettingWithANameAValueAndATooltip) {
  ForEveryPage([](const Product& product, int tab) {
    const OnePage one(product, tab);
    const Sheet& sheet = one.page.Values();
    for (Cell cell = 0; cell < sheet.Cells(); ++cell)
      EXPECT_TRUE(one.page.Shows(cell)) << sheet.RowNameOf(cell) << ' ' << sheet.SettingOf(cell).id;
    for (const auto* const grid : one.page.findChildren<CGridCtrl*>()) {
      for (int row = 1; row < grid->Rows(); ++row) {
        for (int column = 1; column < grid->Columns(); ++column) {
          const QModelIndex index = grid->model()->index(row - 1, column - 1);
          EXPECT_FALSE(index.data(Qt::ToolTipRole).toString().isEmpty()) << row << ' ' << column;
          EXPECT_GE(index.data(Qt::AccessibleTextRole).toString().count(u','), 1);
        }
      }
    }
    for (auto* const control : one.page.findChildren<QWidget*>()) {
      const bool editor = qobject_cast<const QSpinBox*>(control) != nullptr ||
                          qobject_cast<const QComboBox*>(control) != nullptr ||
                          qobject_cast<const QAbstractButton*>(control) != nullptr;
      // What a user reaches: a grid has a button of its own in its corner.
      if (!editor || !(control->focusPolicy() & Qt::TabFocus)) continue;
      EXPECT_FALSE(control->toolTip().isEmpty()) << control->accessibleName().toStdString();
      EXPECT_FALSE(
          QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty())
          << control->toolTip().toStdString();
    }
  });
}

}  // namespace quillon::testing
