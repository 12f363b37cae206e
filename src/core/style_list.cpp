#include "core/style_list.h"

#include <algorithm>

namespace marlith {

QStringList sortStyleNames(QStringList names) {
    // A stable sort gives what passes of neighbour swaps give.
    std::stable_sort(names.begin(), names.end(),
                     [](const QString& a, const QString& b) { return a.toUpper() < b.toUpper(); });
    return names;
}

} // namespace marlith
