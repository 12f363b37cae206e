// The eleven boxes of the Popeye window, top to bottom: the text each holds
// (PopeyeFields) or the entries its list offers (PopeyeLists).
#pragma once

#include <QString>
#include <QStringList>
#include <utility>

namespace marlith {

template <typename T> struct PopeyeBoxes {
    T stipulation, moves, conditions, options, twins, zeroPosition;
    T whitePieces, blackPieces, neutralPieces;
    T command; // a line of its own in the problem file
    T maxMem;  // the value of "-maxmem"

    static constexpr size_t kCount = 11;
    // The box of this number (below kCount) in the order above, which py.dat
    // and the settings file keep.
    const T& box(size_t number) const {
        const T* const all[kCount] = {&stipulation,   &moves,        &conditions,  &options,
                                      &twins,         &zeroPosition, &whitePieces, &blackPieces,
                                      &neutralPieces, &command,      &maxMem};
        return *all[number];
    }
    T& box(size_t number) { return const_cast<T&>(std::as_const(*this).box(number)); }
};

using PopeyeFields = PopeyeBoxes<QString>;
using PopeyeLists = PopeyeBoxes<QStringList>;

} // namespace marlith
