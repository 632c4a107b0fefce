#include "TVLTextXhtmlExporter.h"

#include "TVLCoreUtil.h"
#include "TVLTextPicture_p.h"
#include "TVLXhtmlComposer_p.h"
#include "TVLXhtmlStyles_p.h"
#include "TVLXmlText_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextDocument>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const QString XhtmlNamespace = u"http://www.w3.org/1999/xhtml"_s;
const QString BookNamespace = u"http://www.idpf.org/2007/ops"_s;

// Words of a paragraph may be parted by several blanks and by tabs, which a page wouldn't show.
const QString PageStyle = uR"(
p, h1, h2, h3, h4, h5, h6, li { white-space: pre-wrap; }
p { margin: 0; }
table { border-collapse: collapse; }
td, th { vertical-align: top; padding: 0 0.3em; }
sup a { text-decoration: none; }
.annotation { background-color: #fff3b0; }
.footnotes, .comments { margin-top: 2em; border-top: 1px solid; }
)"_s;

/** The pictures of a page, each once, by their names in the document. */
class PagePictures
{
public:
    PagePictures(const QTextDocument *document, const QString &pagePath, bool areInside)
        : mDocument(document)
        , mFolder(QFileInfo(pagePath).completeBaseName() + u"_files"_s)
        , mFolderPath(QFileInfo(pagePath).dir().filePath(mFolder))
        , mAreInside(areInside)
    {
    }

    [[nodiscard]] QString address(const QString &name)
    {
        const auto known = mAddresses.constFind(name);
        if (known != mAddresses.cend())
            return *known;
        const QString address = newAddress(tvlPortablePicture(mDocument, name));
        mAddresses.insert(name, address);
        return address;
    }

    [[nodiscard]] const QStringList &filePaths() const { return mFilePaths; }
    [[nodiscard]] const QString &error() const { return mError; }

private:
    QString newAddress(const QByteArray &bytes)
    {
        if (!tvlIsPng(bytes) && !tvlIsJpeg(bytes))
            return {};
        const QString kind = tvlIsPng(bytes) ? u"png"_s : u"jpeg"_s;
        if (mAreInside)
            return u"data:image/%1;base64,"_s.arg(kind) + QString::fromLatin1(bytes.toBase64());
        const QString name = u"picture-%1.%2"_s.arg(mFilePaths.size() + 1).arg(kind);
        const QString path = mFolderPath + u'/' + name;
        if (!QDir().mkpath(mFolderPath))
            mError =
                QCoreApplication::translate("TVLTextXhtmlExporter", "The folder can't be made: %1")
                    .arg(QDir::toNativeSeparators(mFolderPath));
        else if (mError.isEmpty())
            (void)TVLCoreUtil::WriteBinaryFile(bytes, path, &mError);
        mFilePaths.append(path);
        return QString::fromUtf8(QUrl::toPercentEncoding(mFolder)) + u'/' + name;
    }

    const QTextDocument *mDocument;
    QString mFolder;
    QString mFolderPath;
    bool mAreInside;
    QHash<QString, QString> mAddresses;
    QStringList mFilePaths;
    QString mError;
};

QString titleOf(const QTextDocument *document, const QString &path)
{
    const QString title = document
        ? tvlXmlText(document->metaInformation(QTextDocument::DocumentTitle)).simplified()
        : QString();
    return title.isEmpty() ? QFileInfo(path).completeBaseName() : title;
}

} // namespace

struct TVLTextXhtmlExporter::Page
{
    bool isXml = false;
    bool isBook = false;
    int pictures = PicturesBeside;
    QHash<QString, QString> linkTargets;
};

TVLTextXhtmlExporter::TVLTextXhtmlExporter(const QTextDocument *document)
    : mDocument(document)
{
}

bool TVLTextXhtmlExporter::toHtml(const QString &path, int pictures)
{
    return write(path, {false, false, pictures, {}}, nullptr);
}

bool TVLTextXhtmlExporter::toXhtml(const QString &path, int pictures)
{
    return write(path, {true, false, pictures, {}}, nullptr);
}

bool TVLTextXhtmlExporter::toEPubXhtml(const QString &path,
                                       const QHash<QString, QString> &linkTargets,
                                       QStringList *pictureFiles, QString *error)
{
    const bool isWritten = write(path, {true, true, PicturesBeside, linkTargets}, pictureFiles);
    if (error)
        *error = mError;
    return isWritten;
}

bool TVLTextXhtmlExporter::write(const QString &path, const Page &page, QStringList *pictureFiles)
{
    mError.clear();
    PagePictures pictures(mDocument, path, page.pictures == PicturesInside);
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    TVLXhtmlComposer composer(mDocument, &writer,
                              {page.isBook, page.linkTargets, [&pictures](const QString &name) {
                                   return pictures.address(name);
                               }});
    if (page.isXml)
        writer.writeStartDocument();
    writer.writeDTD(page.isXml ? u"\n<!DOCTYPE html>\n"_s : u"<!DOCTYPE html>\n"_s);
    writer.writeStartElement(u"html"_s);
    if (page.isXml)
        writer.writeDefaultNamespace(XhtmlNamespace);
    if (page.isBook)
        writer.writeNamespace(BookNamespace, u"epub"_s);
    writer.writeStartElement(u"head"_s);
    writer.writeEmptyElement(u"meta"_s);
    writer.writeAttribute(u"charset"_s, u"utf-8"_s);
    writer.writeTextElement(u"title"_s, titleOf(mDocument, path));
    const QString css = tvlCssOfPage(composer.commonFormat());
    writer.writeTextElement(u"style"_s,
                            (css.isEmpty() ? QString() : u"\nbody { %1 }"_s.arg(css)) + PageStyle);
    writer.writeEndElement();
    writer.writeStartElement(u"body"_s);
    composer.compose();
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeCharacters(u"\n"_s);
    mError = pictures.error();
    if (pictureFiles)
        *pictureFiles = pictures.filePaths();
    // The page comes last: it never names a picture that could not be written.
    return mError.isEmpty() && TVLCoreUtil::WriteBinaryFile(bytes, path, &mError);
}
