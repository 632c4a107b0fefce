// Checks rich text before it is read.
//
//     rtfi FILE [--removeinvalidchar]
//
// Exit status 0 if the file is sound, 1 if it has errors or can't be read, 2 for wrong use. With
// the switch, control characters are first taken out of the file's text. There is no application
// object and nothing of the library but the check: this program is started for each file, and has
// to be quick.

#include "TVLRtfCheck_p.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>
#include <cstring>
#include <optional>

namespace {

enum ExitStatus { Sound = 0, HasErrors = 1, WrongUse = 2 };

struct RtfiCommandLine
{
    QString path;
    bool removesInvalidCharacters = false;
};

std::optional<RtfiCommandLine> parse(int argc, char **argv)
{
    RtfiCommandLine line;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--removeinvalidchar") == 0)
            line.removesInvalidCharacters = true;
        else if (line.path.isEmpty())
            line.path = QFile::decodeName(argv[i]);
        else
            return std::nullopt;
    }
    return line.path.isEmpty() ? std::nullopt : std::optional(line);
}

const char *wordsOf(TVLRtfCheck::Fault fault)
{
    switch (fault) {
    case TVLRtfCheck::NoFault:
        return "sound";
    case TVLRtfCheck::NotRtf:
        return "not a rich text file";
    case TVLRtfCheck::TooDeep:
        return "nested too deeply";
    case TVLRtfCheck::CutOff:
        return "ends before its text does";
    case TVLRtfCheck::GoesOn:
        return "goes on behind the end of its text";
    case TVLRtfCheck::InvalidCharacters:
        return "control characters in the text";
    }
    return "";
}

int fail(const char *words)
{
    std::fprintf(stderr, "rtfi: %s\n", words);
    return HasErrors;
}

/** Takes the place of a file with its content, or leaves it as it is. */
bool replaceContent(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
        && file.commit();
}

int check(const RtfiCommandLine &line)
{
    QFile file(line.path);
    if (!file.open(QIODevice::ReadOnly))
        return fail("can't be opened");
    QByteArray rtf = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail("can't be read");
    TVLRtfCheck::Fault fault = TVLRtfCheck::faultOf(rtf);
    if (fault == TVLRtfCheck::InvalidCharacters && line.removesInvalidCharacters) {
        rtf = TVLRtfCheck::withoutInvalidCharacters(rtf);
        if (!replaceContent(line.path, rtf))
            return fail("can't be written");
        fault = TVLRtfCheck::faultOf(rtf);
    }
    return fault == TVLRtfCheck::NoFault ? Sound : fail(wordsOf(fault));
}

} // namespace

int main(int argc, char **argv)
{
    const std::optional<RtfiCommandLine> line = parse(argc, argv);
    if (line)
        return check(*line);
    std::fputs("usage: rtfi FILE [--removeinvalidchar]\n", stderr);
    return WrongUse;
}
