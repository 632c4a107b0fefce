#include "BenchProject.h"

#include "BenchProse.h"
#include "TestBinderProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/** A text as the plainest of rich text. */
QByteArray richText(const QString &text)
{
    QByteArray rtf = "{\\rtf1\\ansi ";
    for (const QChar ch : text) {
        if (ch == u'\n')
            rtf += "\\par\n";
        else if (ch.unicode() < 0x80)
            rtf += char(ch.unicode());
        else
            rtf += "\\u" + QByteArray::number(qint16(ch.unicode())) + '?';
    }
    return rtf + '}';
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s", qPrintable(file.errorString()));
}

} // namespace

BenchProject::BenchProject(int items, BenchShape shape)
{
    const std::unique_ptr<TestBinderProject> project = makeBenchProject(items, shape);
    QString error;
    if (!TVLProjectFolderFormat::writeBinder(path(), project.get(), &error))
        qFatal("%s", qPrintable(error));
}

void BenchProject::addTexts(int bytes) const
{
    const std::unique_ptr<TVLProjectModel> model = open();
    const QStringList texts = makeBenchProse(model->totalNodesCount(), bytes);
    const QDir folder(TVLProjectFolderFormat::filesDocsPath(path()));
    folder.mkpath(u"."_s);
    int used = 0;
    tvlForEachNode(model->binderRoot(), [&](const TVLProjectNode *node) {
        if (node->mId >= 0 && node->canHaveText())
            write(folder.filePath(u"%1.rtf"_s.arg(node->mId)), richText(texts.at(used++)));
    });
    model->rebuildSearchIndexes(false, nullptr);
}

QString BenchProject::binderPath() const
{
    return TVLProjectFolderFormat::defaultBinderFilePath(path());
}

std::unique_ptr<TVLProjectModel> BenchProject::open() const
{
    return std::unique_ptr<TVLProjectModel>(TVLProjectFolderFormat::openProject(path()));
}
