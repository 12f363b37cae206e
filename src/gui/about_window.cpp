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

    auto* iconLabel = new QLabel(this);
    iconLabel->setObjectName(QStringLiteral("iconLabel"));
    iconLabel->setPixmap(programIcon());
    iconLabel->setGeometry(16, 16, 32, 32);
    auto* titleLabel = new QLabel(QStringLiteral("Chess Diagram Editor"), this);
    titleLabel->setObjectName(QStringLiteral("titleLabel"));
    titleLabel->setGeometry(64, 14, 220, 20);
    QFont bold = titleLabel->font();
    bold.setBold(true);
    titleLabel->setFont(bold);
    auto* platformLabel = new QLabel(QStringLiteral("for Windows 32 bits"), this);
    platformLabel->setObjectName(QStringLiteral("platformLabel"));
    platformLabel->setGeometry(64, 34, 220, 20);
    auto* separatorLine = new QFrame(this);
    separatorLine->setObjectName(QStringLiteral("separatorLine"));
    separatorLine->setFrameShape(QFrame::HLine);
    separatorLine->setFrameShadow(QFrame::Sunken);
    separatorLine->setGeometry(16, 62, 268, 4);

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
