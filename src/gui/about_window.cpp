#include "gui/about_window.h"

#include "gui/tool_faces.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QVersionNumber>
#include <algorithm>

namespace marlith {

QString versionCaption(int major, int minor, int revision) {
    return QStringLiteral("Marlith v%1.%2%3").arg(major).arg(minor).arg(revision);
}

AboutWindow::AboutWindow(const QString& programFolder, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("aboutWindow"));
    setWindowTitle(QStringLiteral("About Marlith"));
    setModal(true);

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
#ifdef Q_OS_LINUX
    const QString platform = QStringLiteral("for Linux");
#else
    const QString platform = QStringLiteral("for ") + QSysInfo::prettyProductName();
#endif
    auto* platformLabel = new QLabel(platform, this);
    platformLabel->setObjectName(QStringLiteral("platformLabel"));
    platformLabel->setGeometry(64, 34, 220, 20);
    auto* separatorLine = new QFrame(this);
    separatorLine->setObjectName(QStringLiteral("separatorLine"));
    separatorLine->setFrameShape(QFrame::HLine);
    separatorLine->setFrameShadow(QFrame::Sunken);

    const QVersionNumber version = QVersionNumber::fromString(QStringLiteral(MARLITH_VERSION));
    auto* versionLabel = new QLabel(
        versionCaption(version.majorVersion(), version.minorVersion(), version.microVersion()),
        this);
    versionLabel->setObjectName(QStringLiteral("versionLabel"));
    versionLabel->setGeometry(64, 74, 220, 20);

    // The window grows with a long folder up to a width that fits any
    // screen; beyond it the middle of the path gives way.
    auto* folderLabel = new QLabel(this);
    folderLabel->setObjectName(QStringLiteral("folderLabel"));
    const QString folderText = QStringLiteral("Files: ") + programFolder;
    folderLabel->setToolTip(programFolder);
    folderLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const int folderWidth =
        std::clamp(folderLabel->fontMetrics().horizontalAdvance(folderText) + 4, 220, 560);
    folderLabel->setText(
        folderLabel->fontMetrics().elidedText(folderText, Qt::ElideMiddle, folderWidth - 4));
    folderLabel->setGeometry(64, 96, folderWidth, 20);
    const int width = folderWidth + 80;
    setFixedSize(width, 172);
    separatorLine->setGeometry(16, 62, width - 32, 4);

    auto* okButton = new QPushButton(QStringLiteral("O&k"), this);
    okButton->setObjectName(QStringLiteral("okButton"));
    okButton->setGeometry((width - 80) / 2, 132, 80, 26);
    okButton->setDefault(true);
    // Ok and Escape both close the window.
    connect(okButton, &QPushButton::clicked, this, &QDialog::accept);
}

} // namespace marlith
