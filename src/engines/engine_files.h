// The outside programs and their files in the program folder: finding them
// at start, the Py.dat table, and the files that their runs leave behind.
#pragma once

#include "engines/popeye_fields.h"

#include <QString>
#include <QStringList>

namespace marlith {

// The file of the folder whose name is one of `names` in any case (earlier
// names first), or "" when there is none. With `executable` only files that
// may be run count.
QString findInFolder(const QString& folder, const QStringList& names, bool executable);
QString findPopeye(const QString& folder); // "py" or "py.exe"
QString findCrafty(const QString& folder); // "crafty" or "crafty.exe"
QString findPyDat(const QString& folder);  // "py.dat"

// What the engine search at start makes of the menu, from which programs
// exist and the engine read from the settings.
struct EngineMenu {
    QString recentEngine;
    bool popeyeEnabled = false;
    bool craftyEnabled = false;
    bool popeyeChecked = false;
    bool craftyChecked = false;
    bool toolShown = false;
};
EngineMenu locateEngines(bool popeyeFound, bool craftyFound, const QString& recentEngine);

// The lists of the Popeye window's eleven boxes and the piece dictionary,
// which always ends in "&&".
struct PyDat {
    PopeyeLists lists;
    QString dictionary;
};
PyDat readPyDat(const QString& path);
// The same from text already read (lines end at CR, LF or CR LF).
PyDat parsePyDat(const QByteArray& data);

// Deletes the logs "log.*" that earlier Crafty runs left, each with the game
// file of the same extension; each name is visited once, so a log that can't
// be deleted doesn't hold up the start. Returns the number of names visited.
int clearLeftovers(const QString& folder);

// Crafty's own work files, deleted when the program ends.
void deleteCraftyWorkFiles(const QString& folder);

// Deletes every file of the folder whose name matches one of the names in any
// case; true if at least one went.
bool deleteNoCase(const QString& folder, const QStringList& names);

} // namespace marlith
