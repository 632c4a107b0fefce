#include "TVLTransforming_p.h"

#include "TVLSelectTextCodecDialog.h"

#include <QFileInfo>
#include <QIODevice>
#include <QTextCodec>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray chosenCodec(const QByteArray &codec, const QString &question)
{
    if (!codec.isEmpty())
        return codec;
    const QByteArray answer =
        TVLSelectTextCodecDialog::getTextEncoding(nullptr, question, QByteArray());
    return answer.isEmpty() ? QByteArrayLiteral("UTF-8") : answer;
}

QTextCodec *codecOf(const QByteArray &name)
{
    QTextCodec *codec = QTextCodec::codecForName(name);
    return codec ? codec : QTextCodec::codecForName("UTF-8");
}

} // namespace

QByteArray tvlExportCodec(const QByteArray &codec, const QString &path)
{
    return chosenCodec(codec, TVLTextTransform::tr("Export %1 using codec:").arg(path));
}

QByteArray tvlImportCodec(const QByteArray &codec, const QString &path)
{
    return chosenCodec(codec, TVLTextTransform::tr("Import %1 using codec:").arg(path));
}

bool tvlWriteEncoded(QIODevice *device, const QString &text, const QByteArray &codec)
{
    const QTextCodec *textCodec = codecOf(codec);
    // Programs that read UTF-8 don't expect a mark at its beginning; the others need theirs.
    const bool isUtf8 = textCodec->name() == "UTF-8";
    const std::unique_ptr<QTextEncoder> encoder(
        textCodec->makeEncoder(isUtf8 ? QTextCodec::IgnoreHeader : QTextCodec::DefaultConversion));
    const QByteArray bytes = encoder->fromUnicode(text);
    if (device->write(bytes) != bytes.size())
        return false;
    auto *file = qobject_cast<QFileDevice *>(device);
    return !file || file->flush();
}

std::optional<QString> tvlReadEncoded(QIODevice *device, const QByteArray &codec)
{
    const QByteArray bytes = device->readAll();
    const auto *file = qobject_cast<const QFileDevice *>(device);
    if (file && file->error() != QFileDevice::NoError)
        return std::nullopt;
    return QTextCodec::codecForUtfText(bytes, codecOf(codec))->toUnicode(bytes);
}

QString tvlWithExtension(const QString &path, TVLFormat::Format format)
{
    const QString extension = TVLFormat::extension(format);
    if (QFileInfo(path).suffix().compare(extension, Qt::CaseInsensitive) == 0)
        return path;
    return path + u'.' + extension;
}

QList<TVLScriptElement> tvlScriptElementsOf(const TVLTextTransform::Options &options)
{
    return TVLScriptElement::toScriptElementList(options.value(u"--fdxscriptelements"_s));
}
