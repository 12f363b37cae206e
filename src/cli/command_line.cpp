#include "cli/command_line.h"

#include "cli/solve_rules.h"

#include <array>

namespace marlith {

namespace {

enum class Option { Output, Style, Size, Format, Last, Search, Jobs, Shard, MaxTime, Stipulation };

struct OptionName {
    QLatin1StringView name;
    Option option;
    bool takesValue;
};

constexpr std::array<OptionName, 11> kOptionNames{
    {{QLatin1StringView("-o"), Option::Output, true},
     {QLatin1StringView("--output"), Option::Output, true},
     {QLatin1StringView("--style"), Option::Style, true},
     {QLatin1StringView("--size"), Option::Size, true},
     {QLatin1StringView("--format"), Option::Format, true},
     {QLatin1StringView("--last"), Option::Last, false},
     {QLatin1StringView("--search"), Option::Search, true},
     {QLatin1StringView("--jobs"), Option::Jobs, true},
     {QLatin1StringView("--shard"), Option::Shard, true},
     {QLatin1StringView("--maxtime"), Option::MaxTime, true},
     {QLatin1StringView("--stipulation"), Option::Stipulation, true}}};

// A command, what its one argument is, and the options it takes. A further
// command is one more row here and one more run in the dispatcher.
struct CommandRule {
    QLatin1StringView name;
    CliCommand command;
    QLatin1StringView input; // what the argument is called in messages
    unsigned options;        // bits of the options it takes
};

constexpr unsigned bit(Option option) {
    return 1u << static_cast<unsigned>(option);
}

const std::array<CommandRule, 3> kCommands{
    {{QLatin1StringView("render"), CliCommand::Render, QLatin1StringView("a position text"),
      bit(Option::Output) | bit(Option::Style) | bit(Option::Size)},
     {QLatin1StringView("export"), CliCommand::Export, QLatin1StringView("a book"),
      bit(Option::Output) | bit(Option::Style) | bit(Option::Size) | bit(Option::Format) |
          bit(Option::Last) | bit(Option::Search)},
     {QLatin1StringView("solve"), CliCommand::Solve, QLatin1StringView("a book"),
      bit(Option::Output) | bit(Option::Style) | bit(Option::Jobs) | bit(Option::Shard) |
          bit(Option::MaxTime) | bit(Option::Stipulation)}}};

bool isHelp(const QString& argument) {
    return argument == QLatin1String("--help") || argument == QLatin1String("-h");
}

const OptionName* findOption(const QString& name) {
    for (const OptionName& option : kOptionNames)
        if (option.name == name) return &option;
    return nullptr;
}

QString quoted(const QString& text) {
    return u'\'' + text + u'\'';
}

} // namespace

bool isCommand(const QStringList& arguments) {
    if (arguments.isEmpty()) return false;
    const QString& first = arguments.first();
    if (isHelp(first) || first == QLatin1String("--version")) return true;
    for (const CommandRule& rule : kCommands)
        if (rule.name == first) return true;
    return false;
}

namespace {

std::optional<int> wholeNumber(const QString& text, int largest) {
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < 1 || number > largest) return std::nullopt;
    return number;
}

} // namespace

bool isPictureExtension(const QString& extension) {
    static const QStringList extensions{QStringLiteral("svg"), QStringLiteral("png"),
                                        QStringLiteral("pdf"), QStringLiteral("bmp")};
    return extensions.contains(extension.toLower());
}

ParsedCommandLine parseCommandLine(const QStringList& arguments) {
    ParsedCommandLine parsed;
    CliOptions& options = parsed.options;
    if (arguments.isEmpty() || arguments.contains(QLatin1String("--help")) ||
        arguments.contains(QLatin1String("-h")))
        return parsed;
    if (arguments.first() == QLatin1String("--version")) {
        options.command = CliCommand::Version;
        if (arguments.size() > 1)
            parsed.error = QStringLiteral("unexpected argument %1").arg(quoted(arguments.at(1)));
        return parsed;
    }
    const CommandRule* rule = nullptr;
    for (const CommandRule& candidate : kCommands)
        if (candidate.name == arguments.first()) rule = &candidate;
    if (!rule) {
        parsed.error = QStringLiteral("unknown command %1 (see marlith --help)")
                           .arg(quoted(arguments.first()));
        return parsed;
    }
    options.command = rule->command;
    const QString commandName = rule->name;
    bool haveInput = false;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        QString argument = arguments.at(i);
        std::optional<QString> value;
        // "--size=300" as well as "--size 300".
        if (argument.startsWith(QLatin1String("--")) && argument.contains(u'=')) {
            value = argument.mid(argument.indexOf(u'=') + 1);
            argument.truncate(argument.indexOf(u'='));
        }
        const bool looksLikeOption = argument.startsWith(u'-') && argument.size() > 1;
        if (!looksLikeOption || argument == QLatin1String("--")) {
            if (argument == QLatin1String("--")) argument = arguments.value(++i);
            if (haveInput) {
                parsed.error = QStringLiteral("unexpected argument %1").arg(quoted(argument));
                return parsed;
            }
            options.input = argument;
            haveInput = true;
            continue;
        }
        const OptionName* option = findOption(argument);
        if (!option || !(rule->options & bit(option->option))) {
            parsed.error = QStringLiteral("%1 has no option %2").arg(commandName, quoted(argument));
            return parsed;
        }
        if (option->takesValue && !value) {
            if (i + 1 >= arguments.size()) {
                parsed.error = QStringLiteral("option %1 needs a value").arg(argument);
                return parsed;
            }
            value = arguments.at(++i);
        } else if (!option->takesValue && value) {
            parsed.error = QStringLiteral("option %1 takes no value").arg(argument);
            return parsed;
        }
        // A whole number from 1 to `largest` into the field, else the error
        // that says what was wanted.
        const auto number = [&](int& field, int largest, const char* wanted) {
            const std::optional<int> n = wholeNumber(*value, largest);
            if (n)
                field = *n;
            else
                parsed.error = QStringLiteral("%1 from 1 to %2, not %3")
                                   .arg(QLatin1String(wanted))
                                   .arg(largest)
                                   .arg(quoted(*value));
            return n.has_value();
        };
        switch (option->option) {
        case Option::Output:
            options.output = *value;
            break;
        case Option::Style:
            options.style = *value;
            break;
        case Option::Size:
            if (!number(options.width, kMaxPictureWidth, "--size needs a width in pixels"))
                return parsed;
            break;
        case Option::Format:
            if (!isPictureExtension(*value)) {
                parsed.error =
                    QStringLiteral("--format is svg, png, pdf or bmp, not %1").arg(quoted(*value));
                return parsed;
            }
            options.format = value->toLower();
            break;
        case Option::Last:
            options.last = true;
            break;
        case Option::Search:
            options.search = *value;
            break;
        case Option::Jobs:
            if (!number(options.jobs, kMaxJobs, "--jobs needs a number")) return parsed;
            break;
        case Option::Shard:
            if (const auto shard = parseShard(*value)) {
                options.shardIndex = shard->index;
                options.shardCount = shard->count;
            } else {
                parsed.error = QStringLiteral("--shard needs I/N with 1 <= I <= N, not %1")
                                   .arg(quoted(*value));
                return parsed;
            }
            break;
        case Option::MaxTime:
            if (!number(options.maxTime, kMaxSolvingSeconds, "--maxtime needs whole seconds"))
                return parsed;
            break;
        case Option::Stipulation:
            options.stipulation = *value;
            break;
        }
    }
    if (!haveInput || options.input.isEmpty())
        parsed.error = QStringLiteral("%1 needs %2").arg(commandName, rule->input);
    else if (options.output.isEmpty() && options.command != CliCommand::Solve)
        parsed.error =
            QStringLiteral("%1 needs -o %2")
                .arg(commandName, options.command == CliCommand::Render ? QStringLiteral("FILE")
                                                                        : QStringLiteral("FOLDER"));
    else if (options.command == CliCommand::Render &&
             !isPictureExtension(options.output.section(u'.', -1)))
        parsed.error =
            QStringLiteral("%1: the name must end in .png, .svg, .pdf or .bmp").arg(options.output);
    return parsed;
}

QString helpText() {
    return QStringLiteral(
        "Usage: marlith [BOOK]\n"
        "       marlith render TEXT -o FILE [--style NAME] [--size WIDTH]\n"
        "       marlith export BOOK -o FOLDER [--format svg|png|pdf|bmp] [--style NAME]\n"
        "                      [--size WIDTH] [--last] [--search CRITERIA]\n"
        "       marlith solve BOOK [-o RESULTS.csv] [--jobs N] [--shard I/N]\n"
        "                     [--maxtime SECONDS] [--stipulation TEXT] [--style NAME]\n"
        "       marlith --help | --version\n"
        "\n"
        "Without a command, the editor starts, with BOOK open when one is named.\n"
        "The commands need no display; they use the settings and styles of the editor\n"
        "and never change them.\n"
        "\n"
        "Commands:\n"
        "  render    draw one position (FEN text, as typed in the position box) into\n"
        "            FILE, a PNG, SVG, PDF or BMP picture by the name's ending\n"
        "  export    draw one diagram per game of a FEN, EPD, PGN or PBM book into\n"
        "            FOLDER, named by the game's number (00001.svg)\n"
        "  solve     let Popeye (py in the program folder) solve each problem of a\n"
        "            book and write one CSV row per problem: game, name, stipulation,\n"
        "            verdict (sound, cooked, no solution, time limit, error: ...),\n"
        "            keys, seconds; rows come in the order the problems are done.\n"
        "            Run again with the same -o, it goes on where it stopped\n"
        "\n"
        "Options:\n"
        "  -o, --output PATH    the picture (render), the folder (export) or the\n"
        "                       results file (solve; default: standard output)\n"
        "      --style NAME     a style of the settings (default: the style last used)\n"
        "      --size WIDTH     the picture's width in pixels (default: the style's)\n"
        "      --format FORMAT  export: svg (default), png, pdf or bmp\n"
        "      --last           export: each game's last position instead of its first\n"
        "      --search CRITERIA\n"
        "                       export: only the games that the criteria find, written\n"
        "                       as in the Search Criteria window: words, or the fields\n"
        "                       \"Words: Paul, 2000; White: 1-6; Black: 9; Global: 10-12;\n"
        "                       Notations: Ke1+ke8\"\n"
        "      --jobs N         solve: Popeye runs at a time (default 1)\n"
        "      --shard I/N      solve: only the problems at places I, I+N, I+2N, ...\n"
        "                       (I from 1), so that N machines share a book\n"
        "      --maxtime SECONDS\n"
        "                       solve: Popeye's time for each problem (default 60)\n"
        "      --stipulation TEXT\n"
        "                       solve: the stipulation of every problem (default: the\n"
        "                       game's Stipulation header; in a PBM book its Event)\n"
        "  -h, --help           show this help and exit\n"
        "      --version        show the version and exit\n"
        "\n"
        "Exit status: 0 done, 1 the run failed, 2 the arguments can't be run.\n");
}

QString versionText() {
    return QStringLiteral("marlith " MARLITH_VERSION);
}

CriteriaFields criteriaFields(const QString& text) {
    CriteriaFields fields;
    QStringList parts{QString()};
    bool quotedPart = false;
    for (const QChar ch : text) {
        if (ch == u'"') quotedPart = !quotedPart;
        if (ch == u';' && !quotedPart)
            parts.append(QString());
        else
            parts.last().append(ch);
    }
    const std::array<std::pair<QLatin1StringView, QString*>, 5> names{
        {{QLatin1StringView("words"), &fields.words},
         {QLatin1StringView("white"), &fields.whiteMen},
         {QLatin1StringView("black"), &fields.blackMen},
         {QLatin1StringView("global"), &fields.allMen},
         {QLatin1StringView("notations"), &fields.notations}}};
    for (const QString& part : parts) {
        const qsizetype colon = part.indexOf(u':');
        QString* field = &fields.words;
        QString value = part;
        for (const auto& [name, target] : names) {
            if (colon >= 0 && part.left(colon).trimmed().compare(name, Qt::CaseInsensitive) == 0) {
                field = target;
                value = part.mid(colon + 1);
            }
        }
        // Two parts of one field read as one list.
        value = value.trimmed();
        if (value.isEmpty()) continue;
        if (!field->isEmpty()) field->append(u',');
        field->append(value);
    }
    return fields;
}

namespace {

QString duration(int64_t seconds) {
    const QString minutesAndSeconds =
        QStringLiteral("%1:%2").arg(seconds / 60 % 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    if (seconds < 3600) return minutesAndSeconds;
    return QStringLiteral("%1:%2")
        .arg(seconds / 3600)
        .arg(minutesAndSeconds.rightJustified(5, u'0'));
}

} // namespace

QString progressText(int64_t done, int64_t total, int64_t elapsedMsecs) {
    QString text = QStringLiteral("%1 of %2").arg(done).arg(total);
    if (done <= 0 || elapsedMsecs <= 0) return text;
    const double rate = done * 1000.0 / elapsedMsecs;
    const auto left = static_cast<int64_t>(std::max<int64_t>(0, total - done) / rate + 0.5);
    return text +
           QStringLiteral(", %1/s, %2 left")
               .arg(rate >= 10 ? QString::number(qRound64(rate)) : QString::number(rate, 'f', 1),
                    duration(left));
}

} // namespace marlith
