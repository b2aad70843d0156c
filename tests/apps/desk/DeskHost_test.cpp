#include "desk/DeskHost.h"

#include "host/Services.h"
#include "host/TraceLog.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace imex::desk::test {

namespace {

/// A host that traces into a file.
class DeskHostTrace : public testing::Test {
 protected:
  DeskHostTrace() { m_settings.load(); }

  imex::test::TemporaryFolder m_folder;
  std::string m_trace = m_folder / "trace.log";
  DeskSettings m_settings{m_folder.write("desk.ini", "[trace]\nfile = " + m_trace + "\n"), "", ""};
};

TEST_F(DeskHostTrace, fullDiskIsSaidAtTheEnd) {
  const imex::test::FileSizeLimit limit(4096);
  DeskHost host(m_settings);
  EXPECT_EQ("", host.finishTrace()) << "not begun";
  host.startTrace();
  for (int i = 0; i < 1000; ++i)
    host::traceLog()->Trace("Test", "fill()", "Entering Method...", 0);
  EXPECT_THAT(host.finishTrace(), testing::StartsWith("The trace file is not complete: "));
}

TEST_F(DeskHostTrace, finishedFileHasEverything) {
  DeskHost host(m_settings);
  host.startTrace();
  host::traceLog()->Trace("Test", "fill()", "Entering Method...", 0);
  EXPECT_EQ("", host.finishTrace());
  EXPECT_THAT(m_folder.read("trace.log"), testing::EndsWith("\ttrace\tTest\tfill()\tEntering Method...\n"));
}

} // namespace

} // namespace imex::desk::test
