#include "DocumentFixtures.h"

#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestProject.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTextCursor>

#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void linkInProject(const TestProject &project, const QString &relativePath, const QString &target)
{
    const QString path = project.path(relativePath);
    QFile::remove(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !QFile::link(target, path))
        qFatal("could not make the link %s", qPrintable(path));
}

} // namespace

LoadedItem::LoadedItem(int id)
    : mNode({id, uuidOf(id)}, nullptr)
{
    for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
        mDocuments[type] = std::make_unique<TVLTextDocument>(nullptr, nullptr, &mNode, type);
    mNode.mTextDocument = mDocuments[TVL::MainText].get();
    mNode.mNotesDocument = mDocuments[TVL::NotesText].get();
    mNode.mSynopsisDocument = mDocuments[TVL::SynopsisText].get();
}

TVLTextDocument *LoadedItem::document(TVL::DocumentType type)
{
    return mDocuments[type].get();
}

void LoadedItem::edit(TVL::DocumentType type, const QString &text)
{
    QTextCursor cursor(document(type));
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    document(type)->setSaved(false);
}

UnopenableFile::UnopenableFile()
    : mSocket(::socket(AF_UNIX, SOCK_STREAM, 0))
{
    if (mSocket < 0)
        qFatal("could not make a socket");
}

UnopenableFile::~UnopenableFile()
{
    ::close(mSocket);
}

void UnopenableFile::linkTo(const TestProject &project, const QString &relativePath) const
{
    linkInProject(project, relativePath, u"/proc/self/fd/%1"_s.arg(mSocket));
}

QString UnopenableFile::errorText()
{
    return u"It isn't an ordinary file"_s;
}

void checkUnopenableDocument(const QString &message)
{
    QFETCH(int, type);
    QFETCH(QString, word);

    const TestProject project;
    const UnopenableFile unopenable;
    const QString filePath = docsPath(TVL::DocumentType(type));
    unopenable.linkTo(project, filePath);
    LoadedItem item;
    TVLTextDocument *document = item.document(TVL::DocumentType(type));
    QString error;
    QVERIFY(!TVLProjectFolderFormat::readDocument(project.path(), item.node(), document, &error));
    QCOMPARE(error, message.arg(word, project.path(filePath), UnopenableFile::errorText()));
    QVERIFY(document->isReadOnly());
}

void linkToUnreadableFile(const TestProject &project, const QString &relativePath)
{
    // The memory at its beginning belongs to no one.
    linkInProject(project, relativePath, u"/proc/self/mem"_s);
}

void makeUnwritable(const TestProject &project, const QString &relativePath)
{
    linkInProject(project, relativePath, u"/dev/full"_s);
}

QString unwritableText(const TestProject &project, const QString &relativePath)
{
    return u"'"_s + project.path(relativePath)
        + u"' is a link, and what it leads to is not written"_s;
}

QByteArray rtfOf(const QByteArray &text)
{
    return "{\\rtf1\\ansi " + text + '}';
}

QString docsPath(TVL::DocumentType type, int id)
{
    return u"Files/Docs/"_s + TVLProjectFolderFormat::documentFileNameId(id, type);
}

TVLTextCommentLink numberedComment(int number)
{
    const QByteArray text = QByteArray::number(number);
    return TVLTextCommentLink(uuidOf(number).toString(QUuid::WithoutBraces).toUpper(),
                              rtfOf("Comment " + text));
}
