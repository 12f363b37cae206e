#include "gui/pick_color.h"

#include "core/app_state.h"
#include "drawing/diagram.h"

#include <QColorDialog>

namespace marlith {

int32_t pickColor(AppState& state, int32_t color, QWidget* parent, QWidget* focusAfter) {
    for (int i = 0; i < 16; ++i)
        QColorDialog::setCustomColor(i, QColor::fromRgba(state.customColors[size_t(i)]));
    QColorDialog dialog(QColor(styleColor(color)), parent);
    const bool picked = dialog.exec() == QDialog::Accepted;
    for (int i = 0; i < 16; ++i)
        state.customColors[size_t(i)] = QColorDialog::customColor(i).rgba();
    if (focusAfter) focusAfter->setFocus();
    if (!picked) return -1;
    const QColor chosen = dialog.selectedColor();
    return chosen.red() | (chosen.green() << 8) | (chosen.blue() << 16);
}

} // namespace marlith
