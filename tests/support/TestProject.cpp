#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel_p.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

void TVLProjectModelTestAccess::setSaved(TVLProjectModel *model)
{
    model->d->mSaved = true;
}

TVLProjectNotes &TVLProjectModelTestAccess::projectNotes(TVLProjectModel *model)
{
    return model->d->mProjectNotes;
}

TestProject::TestProject(const QString &name)
    : mPath(mDirectory.filePath(name + u".tavel"_s))
{
}

QString TestProject::binderPath() const
{
    return path(QFileInfo(mPath).completeBaseName() + u".tavelx"_s);
}

void TestProject::writeFile(const QString &relativePath, const QByteArray &content) const
{
    const QString filePath = path(relativePath);
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(filePath));
}

QByteArray TestProject::readFile(const QString &relativePath) const
{
    QFile file(path(relativePath));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TestModel TestProject::create() const
{
    TestModel model(TVLProjectModel::createBlankProjectInMemory(mPath));
    model->saveAll(true);
    return model;
}

TestModel TestProject::open() const
{
    return TestModel(TVLProjectFolderFormat::openProject(mPath));
}

QMap<QString, QByteArray> TestProject::files() const
{
    QMap<QString, QByteArray> contents;
    QDirIterator files(mPath, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    const QDir directory(mPath);
    while (files.hasNext()) {
        const QString relativePath = directory.relativeFilePath(files.next());
        contents.insert(relativePath, readFile(relativePath));
    }
    return contents;
}

QByteArray binderXml(const QByteArray &items, const QByteArray &sections, const QByteArray &version)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TavelinorProject Version=\"" + version
        + "\"><Binder>" + items + "</Binder>" + sections + "</TavelinorProject>\n";
}
