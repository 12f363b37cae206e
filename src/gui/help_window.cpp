#include "gui/help_window.h"

#include <QFile>
#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace marlith {

HelpWindow::HelpWindow(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(QStringLiteral("Marlith Help"));
    browser_ = new QTextBrowser(this);
    browser_->setObjectName(QStringLiteral("helpBrowser"));
    browser_->setOpenExternalLinks(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(browser_);
    resize(640, 560);
}

bool HelpWindow::open(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0) return false;
    browser_->setSearchPaths({QFileInfo(path).absolutePath()});
    browser_->setHtml(QString::fromUtf8(file.readAll()));
    return true;
}

} // namespace marlith
