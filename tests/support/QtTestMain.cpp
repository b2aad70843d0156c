#include "support/QtTest.h"

#include <QApplication>
#include <QMessageLogContext>
#include <QString>

#include <gtest/gtest.h>

#include <exception>
#include <utility>

namespace imex::test {

namespace {

std::vector<RuntimeError> escapedErrors;

class TestApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::exception&) {
      escapedErrors.push_back(currentError());
      return true;
    }
  }
};

/// What the platform without a screen says of every window, and the web engine of a machine without a graphics card; it
/// is about the platform, not about the window.
bool isOfThePlatform(const QString& message) {
  return message.startsWith(QLatin1String("This plugin does not support")) ||
         message.startsWith(QLatin1String("No suitable graphics backend found"));
}

void failOnWarning(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  const bool isWarning = type == QtWarningMsg || type == QtCriticalMsg;
  if (!isWarning || isOfThePlatform(message))
    return;
  ADD_FAILURE() << "Qt: " << message.toStdString() << " (" << (context.category ? context.category : "") << ')';
}

class FailOnEscapedError : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& /*test*/) override {
    for (const RuntimeError& error : takeEscapedErrors())
      ADD_FAILURE() << "an error left an event: " << error.number() << ' ' << error.description();
  }
};

int runTests(int& argc, char** argv) {
  const TestApplication application(argc, argv);
  qInstallMessageHandler(failOnWarning);
  testing::UnitTest::GetInstance()->listeners().Append(new FailOnEscapedError);
  return RUN_ALL_TESTS();
}

} // namespace

std::vector<RuntimeError> takeEscapedErrors() {
  return std::exchange(escapedErrors, {});
}

} // namespace imex::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) // needs no window system
    return RUN_ALL_TESTS();
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  return imex::test::runTests(argc, argv);
}
