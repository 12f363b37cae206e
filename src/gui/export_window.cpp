#include "gui/export_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

namespace marlith {

namespace {

constexpr ImageFormat kFormats[] = {ImageFormat::Bitmap, ImageFormat::Png, ImageFormat::Svg,
                                    ImageFormat::Pdf};

QSpinBox* rangeSpin(QWidget* parent, const char* name, ExportRange range, const char* suffix) {
    auto* spin = new QSpinBox(parent);
    spin->setObjectName(QLatin1String(name));
    spin->setRange(range.least, range.most);
    spin->setSuffix(QLatin1String(suffix));
    spin->setAccelerated(true);
    return spin;
}

// A spin box with what it gives shown beside it.
QWidget* withNote(QWidget* parent, QSpinBox* spin, QLabel* note) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(spin);
    layout->addWidget(note, 1);
    return row;
}

QLabel* noteLabel(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

} // namespace

ExportWindow::ExportWindow(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("exportWindow"));
    setWindowTitle(QStringLiteral("Export Diagram"));
    setModal(true);

    formatBox_ = new QComboBox(this);
    formatBox_->setObjectName(QStringLiteral("formatBox"));
    for (const ImageFormat format : kFormats)
        formatBox_->addItem(formatName(format), static_cast<int>(format));
    widthSpin_ = rangeSpin(this, "widthSpin", kExportWidths, " px");
    heightLabel_ = noteLabel(this, "heightLabel");
    millimetresSpin_ = rangeSpin(this, "millimetresSpin", kExportMillimetres, " mm");
    pageHeightLabel_ = noteLabel(this, "pageHeightLabel");
    resolutionSpin_ = rangeSpin(this, "resolutionSpin", kExportResolutions, " dpi");
    pagePixelsLabel_ = noteLabel(this, "pagePixelsLabel");
    transparentCheck_ = new QCheckBox(QStringLiteral("&Transparent background"), this);
    transparentCheck_->setObjectName(QStringLiteral("transparentCheck"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("buttonBox"));
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("okButton"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));

    const auto label = [this](const char* name, const char* caption, QWidget* buddy) {
        auto* text = new QLabel(QString::fromUtf8(caption), this);
        text->setObjectName(QLatin1String(name));
        text->setBuddy(buddy);
        return text;
    };
    form_ = new QFormLayout(this);
    form_->addRow(label("formatLabel", "&Format:", formatBox_), formatBox_);
    form_->addRow(label("widthLabel", "&Width:", widthSpin_),
                  withNote(this, widthSpin_, heightLabel_));
    form_->addRow(label("millimetresLabel", "&Width:", millimetresSpin_),
                  withNote(this, millimetresSpin_, pageHeightLabel_));
    form_->addRow(label("resolutionLabel", "&Resolution:", resolutionSpin_),
                  withNote(this, resolutionSpin_, pagePixelsLabel_));
    form_->addRow(QString(), transparentCheck_);
    form_->addRow(buttons);

    connect(formatBox_, &QComboBox::currentIndexChanged, this, &ExportWindow::showFormatControls);
    connect(widthSpin_, &QSpinBox::valueChanged, this, &ExportWindow::showHeights);
    connect(millimetresSpin_, &QSpinBox::valueChanged, this, &ExportWindow::showHeights);
    connect(resolutionSpin_, &QSpinBox::valueChanged, this, &ExportWindow::showHeights);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportWindow::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ExportWindow::reject);
}

void ExportWindow::setChoices(const ExportChoices& choices, QSize picture) {
    picture_ = picture;
    widthSpin_->setMaximum(largestWidthFor(picture));
    widthSpin_->setValue(choices.width);
    millimetresSpin_->setValue(choices.millimetres);
    resolutionSpin_->setValue(choices.dotsPerInch);
    transparentCheck_->setChecked(choices.transparent);
    formatBox_->setCurrentIndex(formatBox_->findData(static_cast<int>(choices.format)));
    showFormatControls();
    showHeights();
    formatBox_->setFocus();
}

ExportChoices ExportWindow::choices() const {
    ExportChoices choices;
    choices.format = static_cast<ImageFormat>(formatBox_->currentData().toInt());
    choices.width = widthSpin_->value();
    choices.millimetres = millimetresSpin_->value();
    choices.dotsPerInch = resolutionSpin_->value();
    choices.transparent = transparentCheck_->isChecked();
    return choices;
}

void ExportWindow::showFormatControls() {
    const ExportControls controls = exportControlsFor(choices().format);
    form_->setRowVisible(1, controls.pixels);
    form_->setRowVisible(2, controls.millimetres);
    form_->setRowVisible(3, controls.millimetres);
    transparentCheck_->setEnabled(controls.transparent);
    adjustSize();
}

void ExportWindow::showHeights() {
    heightLabel_->setText(
        QStringLiteral("× %1 px").arg(marlith::heightForWidth(widthSpin_->value(), picture_)));
    pageHeightLabel_->setText(QStringLiteral("× %1 mm").arg(
        marlith::heightForWidth(millimetresSpin_->value(), picture_)));
    // The pixels of the page as the file is written at this resolution.
    ExportChoices page = choices();
    page.format = ImageFormat::Pdf;
    const int width = exportPictureSize(page, picture_).width;
    pagePixelsLabel_->setText(
        QStringLiteral("= %1 × %2 px").arg(width).arg(marlith::heightForWidth(width, picture_)));
}

} // namespace marlith
