#include "ToolFixtures.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

using namespace Qt::StringLiterals;

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
        + "</Title><MetaData>" + xml.metaData + "</MetaData>" + xml.elements + children
        + "</BinderItem>\n";
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

namespace {

QByteArray customValue(const QByteArray &field, const QByteArray &value)
{
    return "<MetaDataItem><FieldID>" + field + "</FieldID><Value>" + value
        + "</Value></MetaDataItem>";
}

QByteArray fullItems()
{
    const QByteArray harbour =
        item(4, "Text", "The Harbour",
             {.attributes = {},
              .metaData = "<LabelID>1</LabelID><StatusID>2</StatusID><CustomMetaData>"
                  + customValue("pov", "Anna") + customValue("place", {}) + "</CustomMetaData>",
              .children = {},
              .elements = "<Keywords><KeywordID>3</KeywordID><KeywordID>5</KeywordID></Keywords>"
                          "<References><Reference BinderID=\"5\">Next</Reference>"
                          "<Reference Destination=\"https://example.org/\">Tides</Reference>"
                          "</References>"});
    const QByteArray watch =
        item(5, "Text", "First Watch",
             {.attributes = {},
              .metaData = "<StatusID>3</StatusID><CustomMetaData>" + customValue("pov", "Berta")
                  + customValue("place", "Quay") + "</CustomMetaData>",
              .children = {},
              .elements = "<Keywords><KeywordID>3</KeywordID></Keywords>"});
    const QByteArray part =
        item(3, "Folder", "Part 1",
             {.attributes = {},
              .metaData = {},
              .children = harbour + watch,
              .elements = "<DefaultChildTemplateID>7</DefaultChildTemplateID>"});
    const QByteArray templates =
        item(6, "Folder", "Templates",
             {.attributes = {}, .metaData = {}, .children = item(7, "Text", "Scene Sheet")});
    return item(0, "DraftFolder", "Draft", {.attributes = {}, .metaData = {}, .children = part})
        + item(1, "ResearchFolder", "Research",
               {.attributes = {},
                .metaData = {},
                .children = templates
                    + item(8, "Image", "Map",
                           {.attributes = {},
                            .metaData = "<FileExtension>png</FileExtension>",
                            .children = {}})})
        + item(2, "TrashFolder", "Trash");
}

QByteArray fullSections()
{
    QByteArray tables = labelAndStatusSections();
    tables.replace("<Title>Label<", "<Title>Strand<")
        .replace("<DefaultLabelID>-1", "<DefaultLabelID>7")
        .replace("<Title>Status<", "<Title>Stage<")
        .replace("<DefaultStatusID>-1", "<DefaultStatusID>2");
    return tables + "<TemplateFolderUUID>" + uuidOf(6) + "</TemplateFolderUUID>"
        + collectionsSection("<BinderID>4</BinderID><BinderID>5</BinderID>")
        + "<Keywords><Keyword ID=\"3\"><Title>People</Title><Color>1.000 0.000 0.000</Color>"
          "<Children><Keyword ID=\"5\"><Title>Anna</Title></Keyword></Children></Keyword>"
          "<Keyword ID=\"9\"><Title>Places</Title></Keyword></Keywords>"
          "<CustomMetaDataSettings>"
          "<MetaDataField ID=\"pov\" Wraps=\"No\" Color=\"0.000 1.000 0.000\">Point of View"
          "</MetaDataField><MetaDataField ID=\"place\" Wraps=\"Yes\">Place</MetaDataField>"
          "</CustomMetaDataSettings>"
          "<ProjectProperties><ProjectTitle>The Long Harbour</ProjectTitle>"
          "<AbbreviatedTitle>Harbour</AbbreviatedTitle><FullName>Anna Maria Quist</FullName>"
          "<LastName>Quist</LastName><FirstName>Anna</FirstName></ProjectProperties>"
          "<ProjectTargets Notify=\"Yes\"><DraftTarget Type=\"Words\" CountIncludedOnly=\"Yes\" "
          "CurrentCompileGroupOnly=\"Yes\" ShowOverrun=\"Yes\" Buffer=\"50\" "
          "Deadline=\"2026-12-31\" IgnoreDeadline=\"Yes\">80000</DraftTarget>"
          "<SessionTarget Type=\"Characters\" CountDraftOnly=\"Yes\" AllowNegatives=\"Yes\" "
          "ResetType=\"NextDay\" DeterminedFromDeadline=\"Yes\" CanWriteOnDeadlineDate=\"Yes\" "
          "WritingDays=\"Mon,Tue\">1200</SessionTarget></ProjectTargets>"
          "<Favorites><BinderID>5</BinderID><BinderID>3</BinderID></Favorites>"
          "<AutoCompleteList><Completion Scope=\"-2\">Quayside</Completion>"
          "<Completion Scope=\"4\">ANNA</Completion></AutoCompleteList>"
          "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>"
          "<FullScreenBackdrop Type=\"BinderID\">8</FullScreenBackdrop>"
          "<ProjectReferences><Reference BinderID=\"4\">Opening</Reference>"
          "<Reference Destination=\"https://example.org/maps\">Maps</Reference></ProjectReferences>"
          "<PrintSettings><PaperType>A5</PaperType><LeftMargin>50</LeftMargin>"
          "<RightMargin>50</RightMargin><TopMargin>60</TopMargin><BottomMargin>60</BottomMargin>"
          "<Orientation>Portrait</Orientation><Collates>Yes</Collates>"
          "<ReverseOrder>No</ReverseOrder></PrintSettings>"
          "<UserProjectData><Compile Font=\"Serif\"/></UserProjectData>";
}

} // namespace

QByteArray fullBinder()
{
    return binderXml(fullItems(), fullSections());
}

void writeProject(const TestProject &project, const QByteArray &binder,
                  const QByteArray &formatVersion)
{
    project.writeFile(u"Novel.tavelx"_s, binder);
    project.writeFile(u"Files/version.txt"_s, formatVersion);
    // An opening makes this folder where there is none.
    QDir().mkpath(project.path(u"Settings"_s));
}

void writeSoundProject(const TestProject &project)
{
    writeProject(project, soundBinder());
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Gulls.}");
    project.writeFile(u"Files/Docs/4_synopsis.txt"_s, "Gulls");
    recordHashes(project);
    project.writeFile(u"Snapshots/5.snapshots/index.xml"_s, "<Snapshots/>");
}

void recordHashes(const TestProject &project)
{
    const QString path = project.path(u"Files/Docs/docs.checksum"_s);
    const ChecksumMap hashes = TVLProjectChecksums::calcFilesDocsChecksums(project.path());
    if (!TVLProjectChecksums::saveChecksumFile(path, hashes))
        qFatal("could not write %s", qPrintable(path));
}

void zipBinder(const TestProject &project, const QString &zipName)
{
    if (!TVLProjectFolderFormat::compressBinder(project.path(), zipName, project.binderPath()))
        qFatal("could not zip %s", qPrintable(project.binderPath()));
}

ProjectChange writing(const QString &relativePath, const QByteArray &content)
{
    return [=](const TestProject &project) { project.writeFile(relativePath, content); };
}

ProjectChange removing(const QString &relativePath)
{
    return [=](const TestProject &project) {
        if (!QFile::remove(project.path(relativePath)))
            qFatal("could not remove %s", qPrintable(relativePath));
    };
}

ProjectChange cuttingOff(const QString &relativePath)
{
    return [=](const TestProject &project) {
        const QByteArray content = project.readFile(relativePath);
        project.writeFile(relativePath, content.first(content.size() / 2));
    };
}

QByteArray catOf(const TestProject &project, const QString &item)
{
    return runTool({u"cat"_s, project.path(), item}).output;
}
