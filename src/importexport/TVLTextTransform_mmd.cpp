#include "TVLTextTransform.h"

#include "TTextDoc.h"
#include "TTextTransform.h"
#include "TVLTextDoc.h"
#include "TVLTransforming_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;

const QString HtmlHeader = u"--rawhtmlheader="_s;
const QString OdfHeader = u"--rawodfxmlheader="_s;

/** The file between a document and what is made of it: it lies beside that, and goes. */
class IntermediateFile
{
public:
    explicit IntermediateFile(const QString &exportPath)
    {
        const QFileInfo target(exportPath);
        const QString folder = target.absolutePath();
        const QString name = target.completeBaseName() + u".mmd"_s;
        mPath = QDir::toNativeSeparators(folder + u'/' + name);
        if (!QFileInfo::exists(mPath))
            return;
        mBackup = folder + u'/' + TVLCoreUtil::GetUniqueFileName(folder, name);
        mIsFree = QFile::rename(mPath, mBackup);
    }

    ~IntermediateFile()
    {
        if (!mIsFree)
            return;
        const bool isGone = QFile::remove(mPath) || !QFileInfo::exists(mPath);
        if (isGone && !mBackup.isEmpty())
            QFile::rename(mBackup, mPath);
    }
    Q_DISABLE_COPY_MOVE(IntermediateFile)

    /** False if somebody's file stands there and can't be put aside. */
    [[nodiscard]] bool isFree() const { return mIsFree; }
    [[nodiscard]] const QString &path() const { return mPath; }

private:
    QString mPath;
    QString mBackup; ///< Where a file of that name waits; empty for none.
    bool mIsFree = true;
};

/** The text of the first parameter that has a name in it; of one without value it is empty. */
QString valueOf(const QString &name, const QStringList &parameters, qsizetype length)
{
    if (parameters.indexOf(name) == 0)
        return {};
    return parameters.filter(name).value(0).mid(length);
}

/** The lines of meta-data that go before the text. */
QString headerOf(Format format, const QStringList &parameters)
{
    if (format == TVLFormat::MmdToHtml) {
        const QString header = valueOf(HtmlHeader, parameters, HtmlHeader.size());
        return header.isEmpty() ? QString() : u"HTML Header: "_s + header + u"  \n"_s;
    }
    // The line for ODF never had the header in it, which its sign of equality stands for here, and
    // files that were made so rely on that.
    if (format == TVLFormat::MmdToFlatOdf
        && !valueOf(OdfHeader, parameters, OdfHeader.size() - 1).isEmpty())
        return u"ODF Header:   \n"_s;
    return {};
}

/** An argument for the converter, if a parameter is there word for word. */
struct Switch
{
    QStringView parameter;
    QStringView argument;
};

constexpr std::array CommonSwitches = {Switch{u"--nosmart=false", u"--nosmart"},
                                       Switch{u"--nolabels=true", u"--nolabels"},
                                       Switch{u"--nonotes=false", u"--nonotes"}};
constexpr std::array HtmlSwitches = {Switch{u"--filter-html=true", u"--filter-html"},
                                     Switch{u"--filter-styles=true", u"--filter-styles"},
                                     Switch{u"--compatibility=true", u"--compatibility"},
                                     Switch{u"--xslt=true", u"mmd-xslt"},
                                     Switch{u"--process-html=true", u"--process-html"}};
constexpr std::array LatexSwitches = {Switch{u"--xslt=true", u"mmd2tex-xslt"}};

template <std::size_t Size>
QStringList switched(const std::array<Switch, Size> &switches, const QStringList &parameters)
{
    QStringList arguments;
    for (const Switch &known : switches) {
        if (parameters.contains(known.parameter))
            arguments.append(known.argument.toString());
    }
    return arguments;
}

QStringList argumentsFor(Format format, const QStringList &parameters)
{
    const QStringList common = switched(CommonSwitches, parameters);
    const auto to = [](const QString &kind) { return QStringList{u"-b"_s, u"-t"_s, kind}; };
    switch (format) {
    case TVLFormat::MmdToHtml:
        return to(u"html"_s) + common + switched(HtmlSwitches, parameters);
    case TVLFormat::MmdToLatex:
        return to(u"latex"_s) + switched(LatexSwitches, parameters) + common;
    case TVLFormat::MmdToOpml:
        return to(u"opml"_s) + common;
    default:
        return to(u"odf"_s) + common;
    }
}

bool writeMmd(const QTextDocument *document, const QString &header, const QString &path,
              const QByteArray &codec, unsigned int *result)
{
    const std::unique_ptr<QTextDocument> clone(TTextDoc::cloneDocumentQtStyle(document, nullptr));
    TTextDoc::exportImagesToMmd(clone.get(), QFileInfo(path).absolutePath());
    TTextDoc::charFormatToMmd(clone.get());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        *result = TTextTransform::OutputNotOpened;
        return false;
    }
    const QString text = header + TTextDoc::toPlainText(clone.get());
    const bool isWritten = tvlWriteEncoded(&file, text, tvlExportCodec(codec, path));
    *result = isWritten ? TTextTransform::NoError : TTextTransform::WritingFailed;
    return isWritten;
}

} // namespace

unsigned int TVLTextTransform::exportAsMmd(const QTextDocument *document, const QString &path,
                                           Format format, const QByteArray &codec,
                                           const Options &options)
{
    const QStringList parameters = options.value(u"--mmdcommandparameters"_s).toStringList();
    if (!document)
        return TTextTransform::NoDocument;
    if (!TVLFormat::isMmdVariant(format))
        return TTextTransform::IntermediateMissing;
    unsigned int result = TTextTransform::NoError;
    if (format == TVLFormat::Mmd) {
        (void)writeMmd(document, QString(), path, codec, &result);
        return result;
    }
    const IntermediateFile mmd(path);
    if (!mmd.isFree())
        return TTextTransform::OutputNotOpened;
    if (!writeMmd(document, headerOf(format, parameters), mmd.path(), codec, &result))
        return result;
    (void)TVLCoreUtil::DeleteFile(path);
    const QString program = TTextTransform::tvlDoc2MmdPath();
    return TTextTransform::transformProcess(
        program, argumentsFor(format, parameters) + QStringList(mmd.path()) + parameters,
        QDir::toNativeSeparators(QFileInfo(program).absolutePath()), nullptr, true);
}

QString TVLTextTransform::mmdExportPath(const QString &path, const QTextDocument *document)
{
    const QFileInfo file(path);
    const QString folder = file.absolutePath();
    const bool isOneFile = TTextDoc::imageResourceIds(document).isEmpty()
        && TVLTextDoc::internalLinks(document).isEmpty();
    const QStringList ends = {u".mmd"_s, u"_mmd"_s, u"-mmd"_s};
    const bool hasFolder = file.fileName() == file.absoluteDir().dirName()
        || std::any_of(ends.begin(), ends.end(),
                       [&folder](const QString &end) { return folder.endsWith(end); });
    return QDir::toNativeSeparators(isOneFile || hasFolder ? path : path + u'/' + file.fileName());
}
