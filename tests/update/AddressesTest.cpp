// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "pages/common/Vendor.h"
#include "update/BrowserCommand.h"
#include "update/OpenInBrowser.h"

namespace quillon::testing {

TEST(UpdateAddress, StandsBelowTheBase) {
  qunsetenv("QUILLON_UPDATE_BASE");
  EXPECT_EQ(UpdateAddress(32778), "") << "the build was given none";
  for (const char* base : {"http://host/lists", "http://host/lists/"}) {
    qputenv("QUILLON_UPDATE_BASE", base);
    EXPECT_EQ(UpdateAddress(32778), "http://host/lists/update.txt");
    EXPECT_EQ(UpdateAddress(32779), "http://host/lists/firmupdate.txt");
    EXPECT_EQ(UpdateAddress(32780), "http://host/lists/nodeupdate.txt");
    EXPECT_EQ(UpdateAddress(32781), "");
  }
}

TEST(WebAddress, IsHttpOrHttpsWithAServer) {
  for (const char* good : {"http://host", "HTTPS://host:8080/a%20page?q=1#there"}) {
    EXPECT_TRUE(IsWebAddress(good)) << good;
  }
  for (const char* bad :
       {"", "www.host.com", "file:///etc/passwd", "javascript:alert(1)", "http:", "http:///page",
        "http://host/a b", "http://host/\r\n", " http://host", "C:\\page.htm", "\\\\host\\share"}) {
    EXPECT_FALSE(IsWebAddress(bad)) << bad;
    EXPECT_FALSE(OpenInBrowser(bad)) << bad;
  }
  EXPECT_FALSE(OpenDocument("./no-such.pdf"));
}

TEST(BrowserCommand, CutsTheLineAtItsPlaceholder) {
  const struct {
    const char* line;
    const char* command;
  } cases[]{
      {R"("C:\b.exe" -url "%1" -new)", R"("C:\b.exe" -url  http://h/)"},
      {R"(b.exe %1 -new)", "b.exe  http://h/"},
      {R"(b.exe %1 "%1")", "b.exe %1  http://h/"},
      {R"("C:\b.exe" -nohome)", R"("C:\b.exe" -nohome http://h/)"},
      {"", " http://h/"},
  };
  for (const auto& c : cases) EXPECT_EQ(BrowserCommand(c.line, "http://h/"), c.command) << c.line;
}

}  // namespace quillon::testing
