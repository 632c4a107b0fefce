#include "MmdCommandLine.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct MmdTargetRow
{
    QStringView name; ///< Behind `-t`.
    QStringView writer;
    QStringView extension;
    bool isFlatOdf;
};

constexpr MmdTargetRow MmdTargetRows[] = {
    {u"html", u"html5", u"html", false},
    {u"latex", u"latex", u"tex", false},
    {u"opml", u"opml", u"opml", false},
    {u"odf", u"opendocument", u"fodt", true},
};

struct MmdFlagRow
{
    QStringView flag;
    QStringView extensions; ///< What it switches in pandoc's reader.
};

// What pandoc does anyway or has no switch for is accepted and switches nothing.
constexpr MmdFlagRow MmdFlagRows[] = {
    {u"--nosmart", u"-smart"},
    {u"--nolabels", u"-auto_identifiers-mmd_header_identifiers"},
    {u"--nonotes", u"-footnotes"},
    {u"--filter-html", u"-raw_html"},
    {u"--filter-styles", u""},
    {u"--compatibility", u"-footnotes-pipe_tables-definition_lists-implicit_header_references"},
    {u"--process-html", u"+markdown_in_html_blocks"},
};

constexpr QStringView HtmlHeaderFlag = u"--rawhtmlheader=";

/** The names of style sheets that earlier converters applied. */
bool isStyleSheet(const QString &word)
{
    return word == u"mmd-xslt" || word == u"mmd2tex-xslt";
}

QString extensionsOf(const QString &flag)
{
    for (const MmdFlagRow &row : MmdFlagRows) {
        if (row.flag == flag)
            return row.extensions.toString();
    }
    return {};
}

} // namespace

std::optional<MmdCommandLine> MmdCommandLine::parse(const QStringList &words, QString *error)
{
    MmdCommandLine line;
    QString target = u"html"_s;
    QString switches = u"+smart"_s;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString &word = words.at(i);
        if (word == u"-t" && i + 1 < words.size())
            target = words.at(++i);
        else if (word.startsWith(HtmlHeaderFlag))
            line.htmlHeader = word.sliced(HtmlHeaderFlag.size());
        else if (word.startsWith(u'-'))
            switches +=
                extensionsOf(word); // A flag with a value repeats what one without has said.
        else if (line.source.isEmpty() && !isStyleSheet(word))
            line.source = word;
    }
    const auto row = std::find_if(std::begin(MmdTargetRows), std::end(MmdTargetRows),
                                  [&](const MmdTargetRow &each) { return each.name == target; });
    if (row == std::end(MmdTargetRows) || line.source.isEmpty()) {
        *error = u"usage: tavel-doc2mmd -b -t html|latex|opml|odf [FLAG...] FILE"_s;
        return std::nullopt;
    }
    const QFileInfo source(line.source);
    line.target =
        source.absolutePath() + u'/' + source.completeBaseName() + u'.' + row->extension.toString();
    line.reader = u"markdown_mmd"_s + switches;
    line.writer = row->writer.toString();
    line.isFlatOdf = row->isFlatOdf;
    return line;
}
