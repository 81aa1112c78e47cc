// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <stdexcept>
#include <string>
#include <vector>

#include "pages/common/CDeviceConfigPage.h"
#include "pages/common/StackRun.h"
#include "sim/Bus.h"
#include "testing/OwnFolders.h"
#include "testing/link/FaultyLibrary.h"
#include "testing/pages/PageFixture.h"

namespace quillon::testing {

using Bytes = std::vector<std::uint8_t>;

inline QString PathOf(const QString& name) {
  const auto path = OwnFolders::Root() / name.toStdU16String();
  return QDir::fromNativeSeparators(QString::fromStdU16String(path.u16string()));
}

inline QString WriteFile(const QString& name, const Bytes& bytes) {
  QFile file(PathOf(name));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  return file.fileName();
}

// A file of version 2.83 for product 0x0910: `records` records of four bytes.
inline Bytes Firmware(int records) {
  Bytes file = {0x10, 0x09};
  for (int i = 0; i < records; ++i) {
    const auto address = static_cast<std::uint8_t>(4 * i), fill = static_cast<std::uint8_t>(i);
    file.insert(file.end(), {0x00, 0x04, 0x00, address});
    const Bytes data = i == 0 ? Bytes{0x02, 0x83, 0x00, 0x00} : Bytes(4, fill);
    file.insert(file.end(), data.begin(), data.end());
  }
  file.push_back(0x01);
  return file;
}

inline constexpr const char* kInFlashMode =
    R"("product": "0x0910", "firmware": "2.71", "mode": "flash")";

// The page of a simulated board "b", in the state that the fields of a rig give it.
class DeviceConfigFixture {
 public:
  explicit DeviceConfigFixture(const std::string& fields,
                               BoardFamily family = BoardFamily::kJoystick)
      : bus(std::get<sim::Rig>(sim::ParseRig(R"({"boards": [{"id": "b", )" + fields + "}]}")),
            {.latency = {}}),
        library(bus),
        fixture(library),
        run(fixture.link.gate, nullptr, [this] { return now; }),
        page({fixture.link, fixture.prompts, run}, family) {
    Detect();
  }

  // What the main window does after a notification.
  void Detect() {
    fixture.Detect();
    page.ShowDeviceInfo();
  }

  QPushButton& Press(const QString& text) const {
    for (auto* const button : page.findChildren<QPushButton*>()) {
      if (button->text() == text) return *button;
    }
    throw std::runtime_error("The page has no button " + text.toStdString());
  }
  void Click(const QString& text) const { Press(text).click(); }

  // The enabled controls in the order of the page. A disabled one has to say why.
  std::string Enabled() const {
    QStringList words;
    const auto add = [&](const QWidget& control, const QString& word) {
      if (control.isEnabled()) words << word;
      EXPECT_FALSE(control.toolTip().isEmpty()) << word.toStdString();
    };
    for (const char* const text : {"Refresh", "Flash", "Device"}) add(Press(text), text);
    add(Serial(), "serial");
    for (const char* const text : {"Set", "Reboot"}) add(Press(text), text);
    const bool running = page.findChildren<QPushButton*>().at(5)->text() == "Abort";
    for (const char* const text : {running ? "Abort" : "Program", "Execute", "Load..."}) {
      add(Press(text), text);
    }
    return words.join(' ').toStdString();
  }

  QLineEdit& Serial() const { return *page.findChild<QLineEdit*>(); }
  std::string TextOf(const QString& name) const {
    for (const auto* const text : page.findChildren<QPlainTextEdit*>()) {
      if (text->accessibleName() == name) return text->toPlainText().toStdString();
    }
    throw std::runtime_error("The page has no text " + name.toStdString());
  }
  std::string Log() const { return TextOf("Log of the flash update"); }
  std::string Loaded() const { return Named<QLabel>(page, "What is loaded").text().toStdString(); }

  // Loads a file through the dialog; nothing cancels it. The caller expects a message, if any.
  void Load(const std::optional<QString>& path) {
    fixture.prompts.ExpectOpenFile(path);
    Click("Load...");
  }

  const sim::BoardState& Board() { return bus.Find("b")->State(); }

  sim::Bus bus;
  FaultyLibrary library;
  PageFixture fixture;
  std::chrono::milliseconds now{};
  StackRun run;
  CDeviceConfigPage page;
};

}  // namespace quillon::testing
