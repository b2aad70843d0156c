#include "module/ImExModule.h"
#include "support/TestHost.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace imex::test {
namespace {

using ImExModule::launchInternetExplorer;
using Lines = std::vector<std::string>;

class LaunchInternetExplorer : public testing::Test {
 protected:
  TestHost host;
};

} // namespace

TEST_F(LaunchInternetExplorer, handsThePathToTheLauncher) {
  const std::string path = host.folder.write("validationresults.html", "<html></html>");
  EXPECT_EQ(int{launchInternetExplorer(path)}, 0);
  EXPECT_EQ(host.launcher.shown, (Lines{path + " 0"}));
  EXPECT_EQ(host.trace->lines,
            (Lines{"> ImExModule launchInternetExplorer()", "< ImExModule launchInternetExplorer()"}));
}

TEST_F(LaunchInternetExplorer, handsOnAPathWithoutAFileUnchanged) {
  EXPECT_EQ(int{launchInternetExplorer("c:\\no folder/validationresults.html")}, 0);
  EXPECT_EQ(host.launcher.shown, (Lines{"c:\\no folder/validationresults.html 0"}));
}

TEST_F(LaunchInternetExplorer, aRefusal_isRecordedAndSwallowed) {
  host.launcher.error = RuntimeError(1020, "Launcher", "no browser here");
  EXPECT_EQ(int{launchInternetExplorer("page.html")}, 0);
  EXPECT_EQ(host.trace->lines, (Lines{
                                   "> ImExModule launchInternetExplorer()",
                                   "! ImExModule launchInternetExplorer 1020 Launcher: no browser here",
                               }));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(LaunchInternetExplorer, withoutALauncher_recordsThatItCannotBeCreated) {
  host.services.browserLauncher = nullptr;
  host.install();
  EXPECT_EQ(int{launchInternetExplorer("page.html")}, 0);
  EXPECT_EQ(host.trace->lines, (Lines{
                                   "> ImExModule launchInternetExplorer()",
                                   "! ImExModule launchInternetExplorer 429 ImEx: Component can't create object",
                               }));
}

TEST_F(LaunchInternetExplorer, anErrorNumberPast16Bits_escapesAsAnOverflow) {
  host.launcher.error = RuntimeError(-2147467259, "Launcher", "Unspecified error");
  EXPECT_EQ(raisedNumber([] { launchInternetExplorer("page.html"); }), 6);
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule launchInternetExplorer()"}));
}

} // namespace imex::test
