#include "BinderSamples.h"

#include "TVLBinderWriter.h"
#include "TVLProjectNode.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

QUuid sampleUuid()
{
    return QUuid(u"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9"_s);
}

QDateTime sampleCreated()
{
    return QDateTime(QDate(2021, 2, 3), QTime(4, 5, 6), Qt::UTC);
}

QDateTime sampleModified()
{
    return QDateTime(QDate(2022, 12, 31), QTime(23, 59, 58), Qt::UTC);
}

QByteArray sampleAttributes(const QByteArray &type)
{
    return "ID=\"1\" UUID=\"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9\" "
           "Created=\"2021-02-03 04:05:06 +0000\" Modified=\"2022-12-31 23:59:58 +0000\" Type=\""
        + type + "\"";
}

QByteArray sampleItem(const QByteArray &content, const QByteArray &attributes)
{
    return "<BinderItem " + attributes + ">" + content + "</BinderItem>";
}

QString richUserProjectData()
{
    return u"<UserProjectData><!-- mine -->\n  <Odd  markup = 'a'>&amp;</Odd></UserProjectData>"_s;
}

QByteArray richBinder()
{
    static const QByteArray upToUserData = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<TavelinorProject Template="No" Version="1.5" Creator="TVLLIN-1.2.3" Device="My &quot;desk&quot;" Modified="2023-01-02 03:04:05 +0000" ModID="11111111-AAAA-4BBB-8CCC-222222222222">
    <Binder>
        <BinderItem ID="0" UUID="00000000-0000-4000-8000-000000000001" Created="2020-01-01 00:00:00 +0000" Modified="2020-01-01 00:00:01 +0000" Type="DraftFolder">
            <Title>Draft</Title>
            <MetaData>
                <IncludeInCompile>Yes</IncludeInCompile>
            </MetaData>
            <Children>
                <BinderItem ID="3" UUID="00000000-0000-4000-8000-000000000002" Created="2020-01-01 00:00:02 +0000" Modified="2020-01-01 00:00:03 +0000" Type="Folder">
                    <Title>A &lt;chapter&gt; &amp; more</Title>
                    <MetaData>
                        <LabelID>2</LabelID>
                        <StatusID>1</StatusID>
                        <IncludeInCompile>Yes</IncludeInCompile>
                        <FileExtension>txt</FileExtension>
                        <IconFileName>Leaf</IconFileName>
                        <PageBreakBefore>Yes</PageBreakBefore>
                        <CompileAsIs>Yes</CompileAsIs>
                        <NotesTextSelection>3,4</NotesTextSelection>
                        <ShowSynopsisImage>Yes</ShowSynopsisImage>
                        <IndexCardImageFileExtension>jpg</IndexCardImageFileExtension>
                        <IgnoresTitlePrefixAndSuffix>Yes</IgnoresTitlePrefixAndSuffix>
                        <PreferredExternalApplication>Viewer</PreferredExternalApplication>
                        <CustomMetaData>
                            <MetaDataItem>
                                <FieldID>day</FieldID>
                                <Value></Value>
                            </MetaDataItem>
                            <MetaDataItem>
                                <FieldID>pov</FieldID>
                                <Value>Ann</Value>
                            </MetaDataItem>
                        </CustomMetaData>
                    </MetaData>
                    <TextSettings>
                        <TextMode>Script</TextMode>
                        <TextSelection>10,20</TextSelection>
                        <TypingAttributesRTFData>7b5c727466317d</TypingAttributesRTFData>
                        <Target Type="Characters" Notify="Yes" AllowOver="Yes" Buffer="50">1000</Target>
                    </TextSettings>
                    <CorkboardAndOutliner>
                        <SelectedSubdocumentIDs>5</SelectedSubdocumentIDs>
                        <CorkboardSettings>
                            <FreeformMode>Yes</FreeformMode>
                            <FreeformCorkboardDocuments>
                                <IndexCardBinderID Position="1.5,2.25" TimeStamp="2020-02-02 02:02:02 +0000">4</IndexCardBinderID>
                                <IndexCardBinderID Position="3,4" TimeStamp="whenever">5</IndexCardBinderID>
                            </FreeformCorkboardDocuments>
                        </CorkboardSettings>
                    </CorkboardAndOutliner>
                    <Keywords>
                        <KeywordID>7</KeywordID>
                        <KeywordID>6</KeywordID>
                    </Keywords>
                    <References>
                        <Reference BinderID="5">Inside</Reference>
                        <Reference Destination="https://example.org/a%20b?c=d&amp;e">Outside</Reference>
                    </References>
                    <DefaultChildTemplateID>4</DefaultChildTemplateID>
                    <Children>
                        <BinderItem ID="4" UUID="00000000-0000-4000-8000-000000000003" Created="2020-01-01 00:00:04 +0000" Modified="2020-01-01 00:00:05 +0000" Type="Text">
                            <Title>Scene</Title>
                            <MetaData/>
                            <TextSettings>
                                <Target Type="Words">0</Target>
                            </TextSettings>
                        </BinderItem>
                        <BinderItem ID="5" UUID="00000000-0000-4000-8000-000000000004" Created="2020-01-01 00:00:06 +0000" Modified="2020-01-01 00:00:07 +0000" Type="Text">
                            <Title></Title>
                            <MetaData/>
                            <TextSettings>
                                <Target Type="Words" Notify="Yes">5</Target>
                            </TextSettings>
                        </BinderItem>
                    </Children>
                </BinderItem>
            </Children>
        </BinderItem>
        <BinderItem ID="1" UUID="00000000-0000-4000-8000-000000000005" Created="2020-01-01 00:00:08 +0000" Modified="2020-01-01 00:00:09 +0000" Type="ResearchFolder">
            <Title>Research</Title>
            <MetaData/>
            <Children>
                <BinderItem ID="6" UUID="00000000-0000-4000-8000-000000000006" Created="2020-01-01 00:00:10 +0000" Modified="2020-01-01 00:00:11 +0000" Type="Image">
                    <Title>Map</Title>
                    <MetaData>
                        <FileExtension>png</FileExtension>
                    </MetaData>
                    <MediaSettings>
                        <ImageScaleFactor>1.5</ImageScaleFactor>
                        <ImageRotation>90CCW</ImageRotation>
                        <ImageScalesProportionally>No</ImageScalesProportionally>
                        <OriginalURL>/home/me/map.png</OriginalURL>
                        <IsAlias>Yes</IsAlias>
                    </MediaSettings>
                </BinderItem>
                <BinderItem ID="7" UUID="00000000-0000-4000-8000-000000000007" Created="2020-01-01 00:00:12 +0000" Modified="2020-01-01 00:00:13 +0000" Type="PDF">
                    <Title>Paper</Title>
                    <MetaData>
                        <FileExtension>pdf</FileExtension>
                    </MetaData>
                    <MediaSettings>
                        <CurrentPDFPage>12</CurrentPDFPage>
                    </MediaSettings>
                </BinderItem>
                <BinderItem ID="8" UUID="00000000-0000-4000-8000-000000000008" Created="2020-01-01 00:00:14 +0000" Modified="2020-01-01 00:00:15 +0000" Type="WebArchive">
                    <Title>Page</Title>
                    <MetaData/>
                    <MediaSettings>
                        <OriginalURL>https://example.org/</OriginalURL>
                    </MediaSettings>
                </BinderItem>
                <BinderItem ID="9" UUID="00000000-0000-4000-8000-000000000009" Created="2020-01-01 00:00:16 +0000" Modified="2020-01-01 00:00:17 +0000" Type="Media">
                    <Title>Song</Title>
                    <MetaData/>
                </BinderItem>
                <BinderItem ID="10" UUID="00000000-0000-4000-8000-00000000000A" Created="2020-01-01 00:00:18 +0000" Modified="2020-01-01 00:00:19 +0000" Type="Other">
                    <Title>Table</Title>
                    <MetaData/>
                </BinderItem>
            </Children>
        </BinderItem>
        <BinderItem ID="2" UUID="00000000-0000-4000-8000-00000000000B" Created="2020-01-01 00:00:20 +0000" Modified="2020-01-01 00:00:21 +0000" Type="TrashFolder">
            <Title>Trash</Title>
            <MetaData/>
        </BinderItem>
    </Binder>
    <LabelSettings>
        <Title>Label</Title>
        <DefaultLabelID>2</DefaultLabelID>
        <Labels>
            <Label ID="-1">No Label</Label>
            <Label ID="2" Color="1.000 0.000 0.000">Red</Label>
        </Labels>
    </LabelSettings>
    <StatusSettings>
        <Title>Status</Title>
        <DefaultStatusID>-1</DefaultStatusID>
        <StatusItems>
            <Status ID="-1">No Status</Status>
            <Status ID="1">To Do</Status>
        </StatusItems>
    </StatusSettings>
    <TemplateFolderUUID>00000000-0000-4000-8000-000000000002</TemplateFolderUUID>
    <Collections>
        <Collection Type="Binder" ID="b" Color="0.902 0.918 0.933">
            <Title>Binder</Title>
        </Collection>
        <Collection Type="RecentSearch" ID="r" Color="0.902 0.902 0.980">
            <Title>Search Results</Title>
            <SearchSettings Operator="Exact" Type="All" Scope="All" CompileSetting="All" CaseSensitive="No"></SearchSettings>
        </Collection>
        <Collection Type="SavedSearch" ID="s" Color="0.000 1.000 0.000">
            <Title>Trains</Title>
            <SearchSettings Operator="RegExp" Type="CustomMetaData" Scope="ExcludeTrash" CompileSetting="Exclude" CaseSensitive="Yes">train|tram</SearchSettings>
        </Collection>
        <Collection Type="Arbitrary" ID="a" Color="0.000 0.000 1.000">
            <Title>To check</Title>
            <BinderIDs>
                <BinderID>5</BinderID>
                <BinderID>4</BinderID>
            </BinderIDs>
        </Collection>
        <Collection Type="Arbitrary" ID="e" Color="0.000 0.000 0.000">
            <Title>Empty</Title>
        </Collection>
    </Collections>
    <Keywords>
        <Keyword ID="1">
            <Title>Places</Title>
            <Color>1.000 0.502 0.000</Color>
            <Children>
                <Keyword ID="7">
                    <Title>Station &amp; square</Title>
                    <Color>0.000 0.000 0.000</Color>
                </Keyword>
                <Keyword ID="2">
                    <Title>Harbour</Title>
                </Keyword>
            </Children>
        </Keyword>
        <Keyword ID="3">
            <Title></Title>
        </Keyword>
    </Keywords>
    <CustomMetaDataSettings>
        <MetaDataField ID="pov" Wraps="No" Color="0.200 0.400 0.600">Who &amp; where</MetaDataField>
        <MetaDataField ID="day" Wraps="Yes">Day</MetaDataField>
    </CustomMetaDataSettings>
    <ProjectProperties>
        <ProjectTitle>The &lt;long&gt; way</ProjectTitle>
        <AbbreviatedTitle>Way</AbbreviatedTitle>
        <FullName>Ann Lee</FullName>
        <LastName>Lee</LastName>
        <FirstName>Ann</FirstName>
    </ProjectProperties>
    <ProjectTargets Notify="Yes">
        <DraftTarget Type="Pages" CountIncludedOnly="Yes" CurrentCompileGroupOnly="Yes" ShowOverrun="Yes" Buffer="25" Deadline="2030-01-31 00:00:00 +0000" IgnoreDeadline="Yes">300</DraftTarget>
        <SessionTarget Type="Characters" CountDraftOnly="Yes" AllowNegatives="Yes" ResetType="NextDay" DeterminedFromDeadline="Yes" CanWriteOnDeadlineDate="Yes" WritingDays="1,3,5">500</SessionTarget>
    </ProjectTargets>
    <Favorites>
        <BinderID>5</BinderID>
        <BinderID>3</BinderID>
    </Favorites>
    <AutoCompleteList>
        <Completion Scope="-2">Harbour &amp; square</Completion>
        <Completion Scope="-1">Ann</Completion>
        <Completion Scope="4">INT.</Completion>
    </AutoCompleteList>
    <BackupSettings>
        <Exclude>Yes</Exclude>
    </BackupSettings>
    <FullScreenBackdrop Type="BinderID">6</FullScreenBackdrop>
    <ProjectReferences>
        <Reference BinderID="6">The map</Reference>
        <Reference Destination="https://example.org/?a=1&amp;b=2">The page</Reference>
    </ProjectReferences>
    <PrintSettings>
        <PaperType>Letter</PaperType>
        <LeftMargin>72</LeftMargin>
        <RightMargin>28.3465</RightMargin>
        <TopMargin>0</TopMargin>
        <BottomMargin>36.5</BottomMargin>
        <Orientation>Landscape</Orientation>
        <Collates>No</Collates>
        <ReverseOrder>Yes</ReverseOrder>
    </PrintSettings>
    )xml";
    return upToUserData + richUserProjectData().toUtf8() + "\n</TavelinorProject>\n";
}

QByteArray written(const std::function<void(TVLBinderWriter *)> &write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    writer.setAutoFormatting(false);
    write(&writer);
    return buffer.data();
}

QByteArray writtenItem(const TVLProjectNode *node, bool mobile)
{
    return written([=](TVLBinderWriter *writer) { writer->writeNode(node, mobile); });
}

QByteArray writtenContent(const TVLProjectNode *node, bool mobile)
{
    const QByteArray item = writtenItem(node, mobile);
    const qsizetype start = item.indexOf('>') + 1;
    return item.mid(start, item.lastIndexOf("</BinderItem>") - start);
}

DebugLog *DebugLog::sCurrent = nullptr;

DebugLog::DebugLog()
    : mPrevious(qInstallMessageHandler(&DebugLog::collect))
{
    sCurrent = this;
}

DebugLog::~DebugLog()
{
    qInstallMessageHandler(mPrevious);
    sCurrent = nullptr;
}

void DebugLog::collect(QtMsgType, const QMessageLogContext &, const QString &line)
{
    sCurrent->mLines.append(line);
}
