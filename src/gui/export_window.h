// The Export Diagram window: the format, the size (pixels, or millimetres at
// a resolution for PDF) and a transparent background; the caller writes the
// file with the choices that Ok leaves.
#pragma once

#include "output/export_choices.h"

#include <QDialog>
#include <QSize>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QSpinBox;

namespace marlith {

class ExportWindow : public QDialog {
    Q_OBJECT
  public:
    explicit ExportWindow(QWidget* parent = nullptr);

    // Shows the choices for a diagram of `picture` pixels on the screen.
    void setChoices(const ExportChoices& choices, QSize picture);
    ExportChoices choices() const;

  private:
    void showFormatControls();
    void showHeights();

    QSize picture_;
    QFormLayout* form_;
    QComboBox* formatBox_;
    QSpinBox* widthSpin_;
    QLabel* heightLabel_;
    QSpinBox* millimetresSpin_;
    QLabel* pageHeightLabel_;
    QSpinBox* resolutionSpin_;
    QLabel* pagePixelsLabel_;
    QCheckBox* transparentCheck_;
};

} // namespace marlith
