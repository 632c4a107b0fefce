#include "TVLTextTransform.h"

#include "TTextTransform.h"
#include "TVLDoors.h"
#include "TVLTransforming_p.h"
#include "TvlCore.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QTextCursor>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

template <typename Picture>
bool savePicture(const Picture &picture, const QString &path, TVLFormat::Format format)
{
    return !picture.isNull()
        && picture.save(tvlWithExtension(path, format),
                        TVLFormat::extension(format).toLatin1().constData(), -1);
}

} // namespace

bool TVLTextTransform::exportPixmap(const QPixmap &pixmap, const QString &path, Format format)
{
    return savePicture(pixmap, path, format);
}

bool TVLTextTransform::exportImage(const QImage &image, const QString &path, Format format)
{
    return savePicture(image, path, format);
}

QByteArray TVLTextTransform::toPdf(const QImage &image)
{
    QTextDocument document;
    QTextCursor(&document).insertImage(image);
    const TVLTemporaryFile pdf(u"tmp"_s);
    const unsigned int result =
        exportDocument(&document, pdf.path(), TVLFormat::Pdf, "UTF-8", {}, nullptr, false);
    if (result != TTextTransform::NoError || !QFileInfo::exists(pdf.path()))
        return {};
    return TVLCoreUtil::ReadBinaryFile(pdf.path());
}

unsigned int TVLTextTransform::wavToMp3(const QString &wav, const QString &mp3,
                                        const QString &title)
{
    // Of what the tags of an MP3 of the first kind hold.
    constexpr qsizetype LongestTag = 30;
    const QFileInfo source(wav);
    if (!source.exists())
        return TTextTransform::ConverterNotFound;
    const QString target =
        mp3.isEmpty() ? source.dir().filePath(source.baseName() + u".mp3"_s) : mp3;
    QStringList arguments = {u"-V6"_s,
                             u"--ta"_s,
                             TvlCore::systemUsername().left(LongestTag),
                             u"--ty"_s,
                             QString::number(tvlNow().date().year()),
                             u"--tc"_s,
                             u"Audio Note created by Tavelinor"_s};
    if (!title.isEmpty())
        arguments += {u"--tl"_s, title.left(LongestTag)};
    arguments += {source.absoluteFilePath(), QFileInfo(target).absoluteFilePath()};
    const QString program = QDir::toNativeSeparators(QCoreApplication::applicationDirPath()
                                                     + u"/tools/lame/lame.exe"_s);
    return TTextTransform::transformProcess(program, arguments, source.absolutePath(), nullptr,
                                            true);
}
