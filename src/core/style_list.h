// The order of the style list: by upper-case names, equal names in the
// order they came.
#pragma once

#include <QStringList>

namespace marlith {

QStringList sortStyleNames(QStringList names);

} // namespace marlith
