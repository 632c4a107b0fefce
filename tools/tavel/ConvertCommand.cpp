#include "Command.h"
#include "NaturalOrder.h"
#include "TerminalProgress.h"

#include "TTextTransform.h"
#include "TVLSelectTextCodecDialog.h"
#include "TVLTextFiles.h"
#include "TVLTextTransform.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTextCodec>
#include <QTextDocument>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

QCommandLineOption fromOption()
{
    return QCommandLineOption(
        u"from"_s, u"What the files are, as a suffix; their own suffixes if not given."_s,
        u"EXT"_s);
}

QCommandLineOption toOption()
{
    return QCommandLineOption(
        u"to"_s, u"What they become, as a suffix; the target's own suffix if not given."_s,
        u"EXT"_s);
}

QCommandLineOption outOption()
{
    return QCommandLineOption(
        u"out"_s, u"The folder for what any number of files, or folders of them, become."_s,
        u"DIR"_s);
}

QCommandLineOption encodingOption()
{
    return QCommandLineOption(u"encoding"_s,
                              u"The encoding of plain text, read or written; UTF-8 if not given."_s,
                              u"NAME"_s);
}

/** One file, what it is, what it becomes, and where that goes. */
struct Conversion
{
    QString source;
    TVLFormat::Format from = TVLFormat::NoFormat;
    QString target;
    TVLFormat::Format to = TVLFormat::NoFormat;
};

/** What the command line asks for. Each function gives nothing, and a line in the error, where it
 * asks for what isn't there. */
class ConversionPlan
{
public:
    ConversionPlan(const QCommandLineParser &parser, QString *error)
        : mParser(parser)
        , mError(error)
    {
    }

    [[nodiscard]] std::optional<QList<Conversion>> make()
    {
        const QStringList arguments = mParser.positionalArguments();
        if (mParser.isSet(outOption()))
            return manyFiles(arguments);
        if (arguments.size() != 2)
            return fail(u"give a file and its target, or --to and --out"_s);
        const auto conversion = oneFile(arguments.at(0), arguments.at(1));
        if (!conversion)
            return std::nullopt;
        if (QFileInfo::exists(conversion->target)
            && QFileInfo(conversion->source).canonicalFilePath()
                == QFileInfo(conversion->target).canonicalFilePath())
            return fail(u"'%1' can't be its own target"_s.arg(conversion->source));
        return QList<Conversion>{*conversion};
    }

private:
    std::nullopt_t fail(const QString &text)
    {
        *mError = text;
        return std::nullopt;
    }

    [[nodiscard]] TVLFormat::Format sourceFormat(const QString &path) const
    {
        return TVLFormat::format(mParser.isSet(fromOption()) ? mParser.value(fromOption())
                                                             : QFileInfo(path).suffix());
    }

    std::optional<Conversion> oneFile(const QString &source, const QString &target)
    {
        const Conversion conversion{source, sourceFormat(source), target,
                                    TVLFormat::format(mParser.isSet(toOption())
                                                          ? mParser.value(toOption())
                                                          : QFileInfo(target).suffix())};
        if (!TVLTextTransform::canImport(conversion.from))
            return fail(u"'%1' is of no kind that can be read here; there are: %2"_s.arg(
                source, TVLTextTransform::importExtensions().join(u' ')));
        if (!TVLTextTransform::canExport(conversion.to))
            return fail(u"nothing can be written here for '%1'; there are: %2"_s.arg(
                target, TVLTextTransform::exportExtensions().join(u' ')));
        return conversion;
    }

    std::optional<QList<Conversion>> manyFiles(const QStringList &paths)
    {
        const QString extension = mParser.value(toOption());
        if (extension.isEmpty())
            return fail(u"--out needs --to"_s);
        QList<Conversion> plan;
        QSet<QString> names;
        const QStringList sources = filesOf(paths);
        for (const QString &source : sources) {
            const QString base = QFileInfo(source).completeBaseName();
            QString name = base + u'.' + extension;
            // Two files of one name mustn't write over each other.
            for (int number = 1; names.contains(name); ++number)
                name = u"%1 %2.%3"_s.arg(base, QString::number(number), extension);
            names.insert(name);
            const auto conversion =
                oneFile(source, QDir(mParser.value(outOption())).filePath(name));
            if (!conversion)
                return std::nullopt;
            plan.append(*conversion);
        }
        if (plan.isEmpty())
            return fail(u"there is no file to convert"_s);
        return plan;
    }

    /** The files, and of folders those in them that can be read. */
    [[nodiscard]] QStringList filesOf(const QStringList &paths) const
    {
        QStringList files;
        for (const QString &path : paths) {
            if (!QFileInfo(path).isDir()) {
                files.append(path);
                continue;
            }
            QStringList names = QDir(path).entryList(QDir::Files);
            std::sort(names.begin(), names.end(),
                      [](const QString &a, const QString &b) { return naturalLessThan(a, b); });
            for (const QString &name : std::as_const(names)) {
                if (TVLTextTransform::canImport(sourceFormat(name)))
                    files.append(QDir(path).filePath(name));
            }
        }
        return files;
    }

    const QCommandLineParser &mParser;
    QString *mError;
};

QString reasonOf(unsigned int code, const QString &said)
{
    const QString description = TTextTransform::errorDescription(code);
    return said.isEmpty() ? description : description + u' ' + said;
}

/** Whether the file became what it should; @p error has a line if not. */
bool convert(const Conversion &conversion, const QByteArray &encoding, QString *error)
{
    std::unique_ptr<QTextDocument> document;
    if (conversion.from == TVLFormat::PlainText && encoding.isEmpty()) {
        // Plain text may be anything; what isn't UTF-8 is told rather than spoiled.
        document = tvlReadPlainTextFile(conversion.source, error);
        if (!document)
            return false;
    } else {
        document = std::make_unique<QTextDocument>();
        const unsigned int code = TVLTextTransform::importDocument(
            document.get(), conversion.source, conversion.from, {}, encoding);
        if (code != TTextTransform::NoError) {
            *error = reasonOf(code, {});
            return false;
        }
    }
    if (document->metaInformation(QTextDocument::DocumentTitle).isEmpty())
        document->setMetaInformation(QTextDocument::DocumentTitle,
                                     QFileInfo(conversion.source).completeBaseName());
    QString said;
    const unsigned int code = TVLTextTransform::exportDocument(
        document.get(), conversion.target, conversion.to,
        encoding.isEmpty() ? QByteArrayLiteral("UTF-8") : encoding, {}, &said, true);
    if (code != TTextTransform::NoError)
        *error = reasonOf(code, said);
    else if (conversion.to == TVLFormat::Pdf && !QFileInfo::exists(conversion.target))
        *error = TTextTransform::errorDescription(TTextTransform::OutputNotOpened);
    return error->isEmpty();
}

ExitStatus runConvert(const QCommandLineParser &parser, Console *console)
{
    const QByteArray encoding = parser.value(encodingOption()).toLatin1();
    if (parser.isSet(encodingOption()) && !QTextCodec::codecForName(encoding))
        return console->refuse(u"there is no encoding '%1'"_s.arg(parser.value(encodingOption())));
    QString error;
    const auto plan = ConversionPlan(parser, &error).make();
    if (!plan)
        return console->refuse(error);
    if (parser.isSet(outOption()) && !QDir().mkpath(parser.value(outOption())))
        return console->fail(u"the folder '%1' can't be made"_s.arg(parser.value(outOption())));

    const TVLUnattendedTextCodec codec(encoding.isEmpty() ? QByteArrayLiteral("UTF-8") : encoding);
    bool isComplete = true;
    QJsonArray done;
    TerminalProgress progress(console);
    progress.begin(QString(), int(plan->size()));
    for (const Conversion &conversion : *plan) {
        error.clear();
        if (convert(conversion, encoding, &error)) {
            done.append(
                QJsonObject{{u"source"_s, conversion.source}, {u"target"_s, conversion.target}});
        } else {
            console->complain(u"'%1' is not converted: %2"_s.arg(conversion.source, error));
            isComplete = false;
        }
        progress.advance();
    }
    if (wantsJson(parser))
        console->write(QJsonDocument(done).toJson());
    return isComplete ? ExitStatus::Done : ExitStatus::Failed;
}

} // namespace

Command convertCommand()
{
    return {u"convert"_s,
            u"Makes a file of one format from one of another, without a project."_s,
            {{u"FILE"_s, u"What is to be converted, and the target unless there is --out."_s,
              CommandArgument::OnceOrMore}},
            {fromOption(), toOption(), outOption(), encodingOption(), jsonOption()},
            runConvert};
}
