#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

QList<QByteArray> ProgramResult::errorLines() const
{
    QList<QByteArray> lines = errors.split('\n');
    if (lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

QJsonDocument ProgramResult::json() const
{
    return QJsonDocument::fromJson(output);
}

ProgramResult runProgram(const QString &program, const QStringList &arguments,
                         const ProgramPlace &place)
{
    constexpr int Patience = 120000;
    QProcess process;
    process.setProcessEnvironment(place.environment);
    process.setWorkingDirectory(place.workingDirectory);
    if (!place.outputFile.isEmpty())
        process.setStandardOutputFile(place.outputFile);
    if (!place.errorFile.isEmpty())
        process.setStandardErrorFile(place.errorFile);
    process.start(program, arguments);
    if (!process.waitForFinished(Patience))
        return {};
    ProgramResult result;
    result.crashed = process.exitStatus() != QProcess::NormalExit;
    result.status = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

ProgramResult runTool(const QStringList &arguments, const ProgramPlace &place)
{
    return runProgram(QStringLiteral(TAVEL_EXECUTABLE), arguments, place);
}

QMap<QString, QByteArray> everythingBelow(const QString &path)
{
    QMap<QString, QByteArray> found;
    QDirIterator entries(path,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo info(entries.next());
        QByteArray content;
        if (QFile file(info.filePath()); info.isFile() && file.open(QIODevice::ReadOnly))
            content =
                info.lastModified().toString(Qt::ISODateWithMs).toUtf8() + '\n' + file.readAll();
        found.insert(QDir(path).relativeFilePath(info.filePath()), content);
    }
    return found;
}

void writeFileAt(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(path));
}

QByteArray uuidOf(int id)
{
    return "00000000-0000-4000-8000-" + QByteArray::number(id).rightJustified(12, '0');
}

QByteArray itemAttributes(int id)
{
    return "ID=\"" + QByteArray::number(id) + "\" UUID=\"" + uuidOf(id)
        + "\" Created=\"2026-03-01 08:30:00 +0000\" Modified=\"2026-03-02 09:45:00 +0000\"";
}

QByteArray item(int id, const QByteArray &type, const QByteArray &title, const ItemXml &xml)
{
    const QByteArray attributes = xml.attributes.isEmpty() ? itemAttributes(id) : xml.attributes;
    const QByteArray children =
        xml.children.isEmpty() ? QByteArray() : "<Children>\n" + xml.children + "</Children>";
    return "<BinderItem " + attributes + " Type=\"" + type + "\"><Title>" + title
        + "</Title><MetaData>" + xml.metaData + "</MetaData>" + children + "</BinderItem>\n";
}

QByteArray systemFolders(const QByteArray &draftItems)
{
    return item(0, "DraftFolder", "Draft",
                {.attributes = {}, .metaData = {}, .children = draftItems})
        + item(1, "ResearchFolder", "Research") + item(2, "TrashFolder", "Trash");
}

QByteArray labelAndStatusSections()
{
    return "<LabelSettings><Title>Label</Title><DefaultLabelID>-1</DefaultLabelID><Labels>"
           "<Label ID=\"-1\">No Label</Label>"
           "<Label ID=\"1\" Color=\"1.000 0.753 0.502\">Chapter</Label>"
           "<Label ID=\"7\" Color=\"0.000 0.000 1.000\">Idea</Label></Labels></LabelSettings>"
           "<StatusSettings><Title>Status</Title><DefaultStatusID>-1</DefaultStatusID><StatusItems>"
           "<Status ID=\"-1\">No Status</Status><Status ID=\"2\">First Draft</Status>"
           "<Status ID=\"3\">Done</Status></StatusItems></StatusSettings>";
}

QByteArray soundDraftItems()
{
    const QByteArray texts = item(4, "Text", "The Harbour",
                                  {.attributes = {},
                                   .metaData = "<LabelID>1</LabelID><StatusID>2</StatusID>",
                                   .children = {}})
        + item(5, "Text", "First Watch",
               {.attributes = {}, .metaData = "<StatusID>3</StatusID>", .children = {}});
    return item(3, "Folder", "Part 1", {.attributes = {}, .metaData = {}, .children = texts});
}

QByteArray collectionsSection(const QByteArray &memberIds)
{
    return "<Collections><Collection Type=\"Binder\" ID=\"a\"><Title>Binder</Title></Collection>"
           "<Collection Type=\"RecentSearch\" ID=\"b\"><Title>Search Results</Title></Collection>"
           "<Collection Type=\"SavedSearch\" ID=\"c\"><Title>Ships</Title>"
           "<SearchSettings Operator=\"Any\">ship</SearchSettings></Collection>"
           "<Collection Type=\"Arbitrary\" ID=\"d\"><Title>Picks</Title><BinderIDs>"
        + memberIds + "</BinderIDs></Collection></Collections>";
}

QByteArray soundBinder()
{
    QByteArray binder =
        binderXml(systemFolders(soundDraftItems()),
                  labelAndStatusSections()
                      + collectionsSection("<BinderID>4</BinderID><BinderID>5</BinderID>"));
    binder.replace("Version=\"1.5\"",
                   "Version=\"1.5\" Device=\"desk\" Modified=\"2026-03-04 10:11:12 +0000\" "
                   "ModID=\"11111111-2222-4333-8444-555555555555\"");
    return binder;
}

void writeProject(const TestProject &project, const QByteArray &binder,
                  const QByteArray &formatVersion)
{
    project.writeFile(u"Novel.tavelx"_qs, binder);
    project.writeFile(u"Files/version.txt"_qs, formatVersion);
}

void writeSoundProject(const TestProject &project)
{
    writeProject(project, soundBinder());
    project.writeFile(u"Files/Docs/4.rtf"_qs, "{\\rtf1 Gulls.}");
    project.writeFile(u"Files/Docs/4_synopsis.txt"_qs, "Gulls");
    project.writeFile(u"Files/Docs/docs.checksum"_qs, "4.rtf=0");
    project.writeFile(u"Snapshots/5.snapshots/index.xml"_qs, "<Snapshots/>");
}

void zipBinder(const TestProject &project, const QString &zipName)
{
    if (!TVLProjectFolderFormat::compressBinder(project.path(), zipName, project.binderPath()))
        qFatal("could not zip %s", qPrintable(project.binderPath()));
}
