#include "platform/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace imex::platform {

namespace {

TEST(QtClipboard, textReplacesWhatWasThere) {
  QClipboard& system = *QGuiApplication::clipboard();
  system.setText(QStringLiteral("left by another program"));
  QtClipboard clipboard;
  clipboard.clear();
  EXPECT_EQ(QString(), system.text());
  clipboard.setText("Code\tGröße");
  EXPECT_EQ(QStringLiteral("Code\tGröße"), system.text());
  clipboard.setText("");
  EXPECT_EQ(QString(), system.text());
}

} // namespace

} // namespace imex::platform
