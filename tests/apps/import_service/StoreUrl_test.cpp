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
  const std::string hint = "; give sqlite://PATH, sqlite://:memory: or postgresql://USER@HOST/DATABASE.";
  EXPECT_EQ(refusal("rows.db"), "The store \"rows.db\" is of no database system that this program knows" + hint);
  EXPECT_EQ(refusal(""), "The store \"\" is of no database system that this program knows" + hint);
  EXPECT_EQ(refusal("oracle://x"), "The store \"oracle://x\" is of no database system that this program knows" + hint);
  EXPECT_EQ(refusal("sqlite://"), "The store \"sqlite://\" names no file" + hint);
  EXPECT_EQ(refusal("sqlite://a\"b"), "The store \"sqlite://a\"b\" has a double quote in its path" + hint);
}

TEST(StoreUrl, ofPostgresql_isConnectedToAsItStands) {
  const std::string waits = "connect_timeout=10&tcp_user_timeout=30000";
  for (const std::string url : {"postgresql://ann:pw@db.example:5433/rows", "postgres://db.example/rows"}) {
    EXPECT_EQ(StoreUrl::parse(url).system, StoreUrl::System::postgresql);
    EXPECT_EQ(StoreUrl::parse(url).database, url + "?" + waits);
  }
}

TEST(StoreUrl, aQueryPart_isKept) {
  const auto database = [](const std::string& query) {
    return StoreUrl::parse("postgresql://h/d?" + query).database.substr(std::string("postgresql://h/d?").size());
  };
  EXPECT_EQ(database("sslmode=require"), "sslmode=require&connect_timeout=10&tcp_user_timeout=30000");
  EXPECT_EQ(database("connect_timeout=2"), "connect_timeout=2&tcp_user_timeout=30000");
  EXPECT_EQ(database("tcp_user_timeout=1&connect_timeout=2"), "tcp_user_timeout=1&connect_timeout=2");
}

TEST(StoreUrl, whatIsShown_hasNoPassword) {
  EXPECT_EQ(StoreUrl::parse("sqlite://a:b@c").shown, "sqlite://a:b@c");
  EXPECT_EQ(StoreUrl::parse("postgresql://db.example:5433/rows").shown, "postgresql://db.example:5433/rows");
  EXPECT_EQ(StoreUrl::parse("postgresql://ann@h:1/d").shown, "postgresql://***@h:1/d");
  EXPECT_EQ(StoreUrl::parse("postgresql://ann:secret@h:1/d?sslmode=require").shown, "postgresql://***@h:1/d?***");
  EXPECT_EQ(StoreUrl::parse("postgresql://h/d?user=ann&password=secret&sslpassword=other&a=b").shown,
            "postgresql://h/d?***");
}

TEST(StoreUrl, aPassword_isTakenOutOfAnyText) {
  const StoreUrl url = StoreUrl::parse("postgresql://ann:s%40cr%65t@h/d?sslpassword=other");
  EXPECT_EQ(url.withoutPassword("s@cret, s%40cr%65t, secret, other and s@cret"), "***, ***, secret, *** and ***");
  EXPECT_EQ(StoreUrl::parse("postgresql://h/d").withoutPassword("no password"), "no password");
}

TEST(StoreUrl, aRefusal_showsNoPassword) {
  const std::string hint = "; give sqlite://PATH, sqlite://:memory: or postgresql://USER@HOST/DATABASE.";
  EXPECT_EQ(refusal("postgresq://ann:secret@h/d"),
            "The store \"postgresq://***@h/d\" is of no database system that this program knows" + hint);
  for (const std::string odd : {"@", "/", "?", "#", "@@", "/@?"})
    EXPECT_EQ(refusal("postgresql://ann:sec" + odd + "ret@h/d"),
              "The store \"postgresql://***@h/d\" has an \"@\" elsewhere than before the host, or a \"/\", \"?\" or "
              "\"#\" in the password, which are written %40, %2F, %3F and %23" +
                  hint);
  EXPECT_EQ(refusal("postgresql://h/d?user=ann@domain").substr(0, 34), "The store \"postgresql://***@domain");
  for (const std::string odd : {" ", "'", "\"", "\n"})
    EXPECT_EQ(refusal("postgresql://ann:sec" + odd + "ret@h/d"),
              "The store \"postgresql://***@h/d\" has a blank or a quote, which are written %20, %27 and %22" + hint);
}

} // namespace imex::import_service::test
