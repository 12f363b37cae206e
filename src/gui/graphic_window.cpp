#include "gui/graphic_window.h"

#include "core/app_state.h"
#include "drawing/diagram.h"
#include "gui/child_window_place.h"
#include "gui/pick_color.h"
#include "styles/style_block.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <cmath>

namespace marlith {

namespace {

struct Swatch {
    const char* name;
    int32_t color; // red in the low byte
    int row;
    int column;
};
// In the order of their index; placed in two rows of five.
constexpr Swatch kSwatches[10] = {
    {"blackSwatch", 0x000000, 0, 0},  {"redSwatch", 0x0000FF, 0, 1},
    {"greenSwatch", 0x00FF00, 0, 2},  {"yellowSwatch", 0x00FFFF, 0, 3},
    {"blueSwatch", 0xFF0000, 1, 0},   {"magentaSwatch", 0xFF00FF, 1, 1},
    {"cyanSwatch", 0xFFFF00, 1, 2},   {"greySwatch", 0xC0C0C0, 1, 3},
    {"orangeSwatch", 0x0080FF, 0, 4}, {"whiteSwatch", 0xFFFFFF, 1, 4}};

// The widest pen a user can type; the list offers 1 to 9.
constexpr int kMaxPenWidth = 99;

QGroupBox* boldGroup(QWidget* parent, const char* name, const char* caption) {
    auto* group = new QGroupBox(QString::fromUtf8(caption), parent);
    group->setObjectName(QLatin1String(name));
    QFont bold = group->font();
    bold.setBold(true);
    group->setFont(bold);
    return group;
}

QRadioButton* option(QGroupBox* group, const char* name, const char* caption) {
    auto* button = new QRadioButton(QString::fromUtf8(caption), group);
    button->setObjectName(QLatin1String(name));
    // The group's bold is for its title only.
    button->setFont(QFont());
    group->layout()->addWidget(button);
    return button;
}

void paintSwatch(QPushButton* swatch, int32_t color) {
    swatch->setStyleSheet(
        QStringLiteral("QPushButton { background-color: %1; border: %2; }")
            .arg(QColor(styleColor(color)).name(),
                 swatch->hasFocus() ? QStringLiteral("none") : QStringLiteral("1px solid black")));
}

} // namespace

GraphicWindow::GraphicWindow(AppState& state, QWidget* parent)
    : QWidget(parent, Qt::Window), state_(state) {
    setObjectName(QStringLiteral("graphicWindow"));
    setWindowTitle(QStringLiteral("Graphic"));
    auto* grid = new QGridLayout(this);

    QGroupBox* objects = boldGroup(this, "objectGroup", "Object");
    new QVBoxLayout(objects);
    lineOption_ = option(objects, "lineOption", "&Line");
    circleOption_ = option(objects, "circleOption", "C&ircle");
    freeHandOption_ = option(objects, "freeHandOption", "Free &Hand");
    lineOption_->setChecked(true);

    QGroupBox* modes = boldGroup(this, "snapGroup", "Mode");
    new QVBoxLayout(modes);
    snapOptions_[0] = option(modes, "snapOffOption", "Snap Of&f");
    snapOptions_[1] = option(modes, "snapCornerOption", "&Snap to square corner");
    snapOptions_[2] = option(modes, "snapCenterOption", "S&nap to square center");
    snapOptions_[0]->setChecked(true);
    // Free Hand knows no snapping; the choice stays for the other objects.
    for (QRadioButton* object : {lineOption_, circleOption_, freeHandOption_})
        connect(object, &QRadioButton::toggled, this, [this] {
            for (QRadioButton* mode : snapOptions_)
                mode->setEnabled(!freeHandOption_->isChecked());
        });

    QGroupBox* width = boldGroup(this, "widthGroup", "Width");
    auto* widthColumn = new QVBoxLayout(width);
    widthBox_ = new QComboBox(width);
    widthBox_->setObjectName(QStringLiteral("widthBox"));
    widthBox_->setFont(QFont());
    widthBox_->setEditable(true);
    widthBox_->setInsertPolicy(QComboBox::NoInsert);
    for (int w = 1; w <= 9; ++w)
        widthBox_->addItem(QString::number(w));
    widthBox_->setCurrentIndex(0);
    sampleLine_ = new QFrame(width);
    sampleLine_->setObjectName(QStringLiteral("sampleLine"));
    sampleLine_->setAutoFillBackground(true);
    widthColumn->addWidget(widthBox_);
    widthColumn->addWidget(sampleLine_);
    connect(widthBox_, &QComboBox::editTextChanged, this, &GraphicWindow::takeTypedWidth);
    connect(widthBox_, &QComboBox::activated, this, &GraphicWindow::chooseWidth);

    QGroupBox* colours = boldGroup(this, "colorGroup", "Color");
    auto* swatchGrid = new QGridLayout(colours);
    for (size_t i = 0; i < swatches_.size(); ++i) {
        auto* swatch = new QPushButton(colours);
        swatch->setObjectName(QLatin1String(kSwatches[i].name));
        swatch->setFixedSize(17, 17);
        swatch->setAutoDefault(false);
        swatch->installEventFilter(this);
        paintSwatch(swatch, kSwatches[i].color);
        swatchGrid->addWidget(swatch, kSwatches[i].row, kSwatches[i].column);
        connect(swatch, &QPushButton::clicked, this,
                [this, i] { takeSwatchColor(static_cast<int>(i)); });
        swatches_[i] = swatch;
    }

    auto* clear = new QPushButton(QStringLiteral("&Clear Graphic"), this);
    clear->setObjectName(QStringLiteral("clearGraphicButton"));
    auto* ok = new QPushButton(QStringLiteral("O&k"), this);
    ok->setObjectName(QStringLiteral("okButton"));
    connect(clear, &QPushButton::clicked, this, &GraphicWindow::clearRequested);
    connect(ok, &QPushButton::clicked, this, &GraphicWindow::hide);

    grid->addWidget(objects, 0, 0);
    grid->addWidget(modes, 0, 1, 1, 2);
    grid->addWidget(width, 1, 0);
    grid->addWidget(colours, 1, 1);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(clear);
    buttons->addStretch();
    buttons->addWidget(ok);
    grid->addLayout(buttons, 1, 2);
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    pickColor = [this](int32_t color, QWidget* focusAfter) {
        return marlith::pickColor(state_, color, this, focusAfter);
    };
    showPen();
}

StrokeObject GraphicWindow::object() const {
    if (circleOption_->isChecked()) return StrokeObject::Circle;
    if (freeHandOption_->isChecked()) return StrokeObject::FreeHand;
    return StrokeObject::Line;
}

SnapMode GraphicWindow::snapMode() const {
    if (snapOptions_[1]->isChecked()) return SnapMode::Corner;
    if (snapOptions_[2]->isChecked()) return SnapMode::Center;
    return SnapMode::Off;
}

void GraphicWindow::showPen() {
    QPalette palette = sampleLine_->palette();
    palette.setColor(QPalette::Window, QColor(styleColor(pen_.color)));
    sampleLine_->setPalette(palette);
    sampleLine_->setFixedHeight(std::min(pen_.width, 12));
}

void GraphicWindow::takeSwatchColor(int index) {
    pen_.color = kSwatches[index].color;
    showPen();
}

void GraphicWindow::pickSwatchColor(int index) {
    const int32_t color = pickColor(kSwatches[index].color, swatches_[static_cast<size_t>(index)]);
    if (color >= 0) pen_.color = color;
    showPen();
}

void GraphicWindow::takeTypedWidth() {
    // A text that is no width of at least one leaves the pen as it was.
    const std::optional<double> number = itemNumber(widthBox_->currentText());
    if (!number || *number < 1) return;
    pen_.width = static_cast<int>(std::min<double>(*number, kMaxPenWidth));
    showPen();
}

void GraphicWindow::chooseWidth(int index) {
    widthBox_->setEditText(QString::number(index + 1));
    pen_.width = index + 1;
    showPen();
}

bool GraphicWindow::eventFilter(QObject* watched, QEvent* event) {
    for (size_t i = 0; i < swatches_.size(); ++i) {
        if (watched != swatches_[i]) continue;
        switch (event->type()) {
        case QEvent::MouseButtonDblClick:
            pickSwatchColor(static_cast<int>(i));
            return true;
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key != Qt::Key_Return && key != Qt::Key_Enter) break;
            takeSwatchColor(static_cast<int>(i));
            return true;
        }
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            paintSwatch(swatches_[i], kSwatches[i].color);
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void GraphicWindow::closeEvent(QCloseEvent* event) {
    hideOnClose(*this, *event, state_.mainWindowAlive);
}

} // namespace marlith
