#include "core/about_window.h"

#include "core/tool_faces.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVersionNumber>

namespace marlith {

QString VersionCaption(int major, int minor, int revision) {
    return QStringLiteral("Marlith v%1.%2%3").arg(major).arg(minor).arg(revision);
}

Form2::Form2(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Form2"));
    setWindowTitle(QStringLiteral("About Marlith"));
    setModal(true);
    setFixedSize(300, 150);

    auto* icon = new QLabel(this);
    icon->setPixmap(ProgramIcon());
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
    auto* label1 = new QLabel(
        VersionCaption(version.majorVersion(), version.minorVersion(), version.microVersion()),
        this);
    label1->setObjectName(QStringLiteral("Label1"));
    label1->setGeometry(64, 74, 220, 20);

    auto* command1 = new QPushButton(QStringLiteral("O&k"), this);
    command1->setObjectName(QStringLiteral("Command1"));
    command1->setGeometry(110, 110, 80, 26);
    command1->setDefault(true);
    // Ok and Escape both close the window.
    connect(command1, &QPushButton::clicked, this, &QDialog::accept);
}

} // namespace marlith
