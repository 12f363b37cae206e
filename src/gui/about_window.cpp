#include "gui/about_window.h"

#include "gui/tool_faces.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVersionNumber>

namespace marlith {

QString versionCaption(int major, int minor, int revision) {
    return QStringLiteral("Marlith v%1.%2%3").arg(major).arg(minor).arg(revision);
}

AboutWindow::AboutWindow(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("aboutWindow"));
    setWindowTitle(QStringLiteral("About Marlith"));
    setModal(true);
    setFixedSize(300, 150);

    auto* icon = new QLabel(this);
    icon->setPixmap(programIcon());
    icon->setGeometry(16, 16, 32, 32);
    auto* title = new QLabel(QStringLiteral("Chess Diagram Editor"), this);
    title->setGeometry(64, 14, 220, 20);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    auto* platform = new QLabel(QStringLiteral("for Windows 32 bits"), this);
    platform->setGeometry(64, 34, 220, 20);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    line->setGeometry(16, 62, 268, 4);

    const QVersionNumber version = QVersionNumber::fromString(QStringLiteral(MARLITH_VERSION));
    auto* versionLabel = new QLabel(
        versionCaption(version.majorVersion(), version.minorVersion(), version.microVersion()),
        this);
    versionLabel->setObjectName(QStringLiteral("versionLabel"));
    versionLabel->setGeometry(64, 74, 220, 20);

    auto* okButton = new QPushButton(QStringLiteral("O&k"), this);
    okButton->setObjectName(QStringLiteral("okButton"));
    okButton->setGeometry(110, 110, 80, 26);
    okButton->setDefault(true);
    // Ok and Escape both close the window.
    connect(okButton, &QPushButton::clicked, this, &QDialog::accept);
}

} // namespace marlith
