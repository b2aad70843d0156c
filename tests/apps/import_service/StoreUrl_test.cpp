#include "import_service/StoreUrl.h"

#include "import_service/ExitCode.h"

#include <gtest/gtest.h>

namespace imex::import_service::test {

std::string refusal(std::string_view url) {
  try {
    StoreUrl::parse(url);
    return "";
  } catch (const StartError& error) {
    EXPECT_EQ(error.code(), ExitCode::usage);
    return error.what();
  }
}

TEST(StoreUrl, whatFollowsTheScheme_isThePath) {
  EXPECT_EQ(StoreUrl::parse("sqlite://rows.db").database, "rows.db");
  EXPECT_EQ(StoreUrl::parse("sqlite:///var/lib/a b=c.db").database, "/var/lib/a b=c.db");
  EXPECT_EQ(StoreUrl::parse("sqlite://:memory:").database, ":memory:");
}

TEST(StoreUrl, anythingElse_isRefused) {
  const std::string hint = "; give sqlite://PATH or sqlite://:memory:.";
  EXPECT_EQ(refusal("rows.db"), "The store \"rows.db\" is of no database system that this program knows" + hint);
  EXPECT_EQ(refusal(""), "The store \"\" is of no database system that this program knows" + hint);
  EXPECT_EQ(refusal("oracle://x"), "The store \"oracle://x\" is of no database system that this program knows" + hint);
  EXPECT_EQ(refusal("sqlite://"), "The store \"sqlite://\" names no file" + hint);
  EXPECT_EQ(refusal("sqlite://a\"b"), "The store \"sqlite://a\"b\" has a double quote in its path" + hint);
}

} // namespace imex::import_service::test
