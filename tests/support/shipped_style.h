// The style library as the build ships it, for the tests that draw or check it.
#pragma once

#include "core/settings.h"

namespace marlith::testing {

// The shipped style of that name, or with none the one the first start shows.
inline SettingsRead readShippedStyle(const QString& name, Style& style) {
    resetStyle(style);
    style.StyleName = name;
    RecentList recent;
    QString engine;
    return readSettings(QStringLiteral(MARLITH_SHIPPED_DIR "/Marlith.ini"),
                        QStringLiteral(MARLITH_SHIPPED_DIR "/"), style, recent, engine);
}

} // namespace marlith::testing
