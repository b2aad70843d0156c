#include "BrowserTest.h"

#include <QDesktopServices>
#include <QVBoxLayout>
#include <QWebEngineScript>

namespace imex::platform::test {

namespace {

constexpr const char* kSchemes[] = {"http", "https", "mailto", "file", "ftp"};

} // namespace

Desktop::Desktop() {
  for (const char* scheme : kSchemes)
    QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
}

Desktop::~Desktop() {
  for (const char* scheme : kSchemes)
    QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
}

BrowserTest::BrowserTest() : browser(*new WebBrowser) {
  auto* layout = new QVBoxLayout(&window);
  layout->addWidget(&browser);
  window.resize(640, 480);
  window.show();
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

bool BrowserTest::open(const std::string& address) {
  QSignalSpy loaded(&browser, &WebBrowser::loaded);
  browser.navigate(address);
  return loaded.wait(kGreatestWait) && loaded.constFirst().constFirst().toBool();
}

void BrowserTest::openPage(std::string_view html, std::string_view name) {
  ASSERT_TRUE(open(folder.write(name, html)));
}

std::string BrowserTest::text() {
  bool isDone = false;
  std::string result;
  view().page()->toPlainText([&](const QString& text) {
    result = text.toStdString();
    isDone = true;
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }, kGreatestWait));
  return result;
}

QVariant BrowserTest::ask(const char* expression) {
  bool isDone = false;
  QVariant result;
  view().page()->runJavaScript(QLatin1String(expression), QWebEngineScript::ApplicationWorld,
                               [&](const QVariant& value) {
                                 result = value;
                                 isDone = true;
                               });
  EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }, kGreatestWait));
  return result;
}

void BrowserTest::click(const char* selector, Qt::KeyboardModifiers modifiers, Qt::MouseButton button) {
  const std::string rectangle = std::string("(function () { const r = document.querySelector('") + selector +
                                "').getBoundingClientRect(); return [r.x + r.width / 2, r.y + r.height / 2]; })()";
  const QVariantList centre = ask(rectangle.c_str()).toList();
  ASSERT_EQ(2, centre.size()) << selector;
  QTest::mouseClick(view().focusProxy(), button, modifiers, QPoint(centre[0].toInt(), centre[1].toInt()));
}

void BrowserTest::settle() {
  // Answers come back in the order of the questions, by way of the process that shows the document.
  for (int i = 0; i < 5; ++i)
    (void)text();
}

} // namespace imex::platform::test
