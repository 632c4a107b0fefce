#pragma once

#include "TVLCoreUtil.h"
#include "TVLFormat.h"
#include "TVLScriptElement.h"
#include "TVLTextTransform.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

class QIODevice;

/** A path in the application's own temporary folder; what comes to lie there goes with this. */
class TVLTemporaryFile
{
public:
    explicit TVLTemporaryFile(const QString &extension)
        : mPath(TVLCoreUtil::GetNewTempFilePath(extension))
    {
    }
    ~TVLTemporaryFile() { (void)TVLCoreUtil::DeleteFile(mPath); }
    Q_DISABLE_COPY_MOVE(TVLTemporaryFile)

    [[nodiscard]] const QString &path() const { return mPath; }

private:
    QString mPath;
};

/** The encoding of a file that is written or read: the one given, else the user's answer, else
 * UTF-8. */
[[nodiscard]] QByteArray tvlExportCodec(const QByteArray &codec, const QString &path);
[[nodiscard]] QByteArray tvlImportCodec(const QByteArray &codec, const QString &path);

/** Writes a text in an encoding; in UTF-8 if there is none of that name. */
[[nodiscard]] bool tvlWriteEncoded(QIODevice *device, const QString &text, const QByteArray &codec);
/** Reads a text in an encoding, or what a byte order mark says; nothing if the device fails. */
[[nodiscard]] std::optional<QString> tvlReadEncoded(QIODevice *device, const QByteArray &codec);

/** A path with the extension of a format behind it, unless its own is that in any letters. */
[[nodiscard]] QString tvlWithExtension(const QString &path, TVLFormat::Format format);

/** The elements of a screenplay that the options of a conversion give. */
[[nodiscard]] QList<TVLScriptElement> tvlScriptElementsOf(const TVLTextTransform::Options &options);
