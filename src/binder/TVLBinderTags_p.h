#pragma once

#include <QString>

using namespace Qt::StringLiterals;

/** Names of the elements of the binder and of the files beside it. */
namespace TVLBinderTags {

inline const QString TavelinorProject = u"TavelinorProject"_s;
inline const QString Binder = u"Binder"_s;
inline const QString BinderItem = u"BinderItem"_s;
inline const QString Title = u"Title"_s;
inline const QString MetaData = u"MetaData"_s;
inline const QString TextSettings = u"TextSettings"_s;
inline const QString MediaSettings = u"MediaSettings"_s;
inline const QString CorkboardAndOutliner = u"CorkboardAndOutliner"_s;
inline const QString Keywords = u"Keywords"_s;
inline const QString References = u"References"_s;
inline const QString DefaultChildTemplateID = u"DefaultChildTemplateID"_s;
inline const QString Children = u"Children"_s;

inline const QString LabelID = u"LabelID"_s;
inline const QString StatusID = u"StatusID"_s;
inline const QString IncludeInCompile = u"IncludeInCompile"_s;
inline const QString FileExtension = u"FileExtension"_s;
inline const QString IconFileName = u"IconFileName"_s;
inline const QString PageBreakBefore = u"PageBreakBefore"_s;
inline const QString BreakBeforeParagraph = u"BreakBeforeParagraph"_s;
inline const QString CompileAsIs = u"CompileAsIs"_s;
inline const QString NotesTextSelection = u"NotesTextSelection"_s;
inline const QString ShowSynopsisImage = u"ShowSynopsisImage"_s;
inline const QString IndexCardImageFileExtension = u"IndexCardImageFileExtension"_s;
inline const QString IgnoresTitlePrefixAndSuffix = u"IgnoresTitlePrefixAndSuffix"_s;
inline const QString PreferredExternalApplication = u"PreferredExternalApplication"_s;
inline const QString CustomMetaData = u"CustomMetaData"_s;
inline const QString MetaDataItem = u"MetaDataItem"_s;
inline const QString FieldID = u"FieldID"_s;
inline const QString Value = u"Value"_s;

inline const QString TextMode = u"TextMode"_s;
inline const QString TextSelection = u"TextSelection"_s;
inline const QString TypingAttributesRTFData = u"TypingAttributesRTFData"_s;
inline const QString Target = u"Target"_s;

inline const QString ImageScaleFactor = u"ImageScaleFactor"_s;
inline const QString ImageRotation = u"ImageRotation"_s;
inline const QString ImageScalesProportionally = u"ImageScalesProportionally"_s;
inline const QString OriginalURL = u"OriginalURL"_s;
inline const QString IsAlias = u"IsAlias"_s;
inline const QString CurrentPDFPage = u"CurrentPDFPage"_s;

inline const QString SelectedSubdocumentIDs = u"SelectedSubdocumentIDs"_s;
inline const QString CorkboardSettings = u"CorkboardSettings"_s;
inline const QString FreeformMode = u"FreeformMode"_s;
inline const QString FreeformCorkboardDocuments = u"FreeformCorkboardDocuments"_s;
inline const QString IndexCardBinderID = u"IndexCardBinderID"_s;

inline const QString KeywordID = u"KeywordID"_s;
inline const QString Reference = u"Reference"_s;

inline const QString LabelSettings = u"LabelSettings"_s;
inline const QString DefaultLabelID = u"DefaultLabelID"_s;
inline const QString Labels = u"Labels"_s;
inline const QString Label = u"Label"_s;
inline const QString StatusSettings = u"StatusSettings"_s;
inline const QString DefaultStatusID = u"DefaultStatusID"_s;
inline const QString StatusItems = u"StatusItems"_s;
inline const QString Status = u"Status"_s;
inline const QString TemplateFolderUUID = u"TemplateFolderUUID"_s;
inline const QString TemplateFolderID = u"TemplateFolderID"_s;

inline const QString Collections = u"Collections"_s;
inline const QString Collection = u"Collection"_s;
inline const QString SearchSettings = u"SearchSettings"_s;
inline const QString BinderIDs = u"BinderIDs"_s;
inline const QString BinderID = u"BinderID"_s;
inline const QString Keyword = u"Keyword"_s;

inline const QString CustomMetaDataSettings = u"CustomMetaDataSettings"_s;
inline const QString MetaDataField = u"MetaDataField"_s;
inline const QString ProjectProperties = u"ProjectProperties"_s;
inline const QString ProjectTitle = u"ProjectTitle"_s;
inline const QString AbbreviatedTitle = u"AbbreviatedTitle"_s;
inline const QString FullName = u"FullName"_s;
inline const QString LastName = u"LastName"_s;
inline const QString FirstName = u"FirstName"_s;
inline const QString ProjectTargets = u"ProjectTargets"_s;
inline const QString DraftTarget = u"DraftTarget"_s;
inline const QString SessionTarget = u"SessionTarget"_s;
inline const QString Favorites = u"Favorites"_s;
inline const QString AutoCompleteList = u"AutoCompleteList"_s;
inline const QString Completion = u"Completion"_s;
inline const QString BackupSettings = u"BackupSettings"_s;
inline const QString Exclude = u"Exclude"_s;
inline const QString FullScreenBackdrop = u"FullScreenBackdrop"_s;
inline const QString ProjectReferences = u"ProjectReferences"_s;
inline const QString PrintSettings = u"PrintSettings"_s;
inline const QString PaperType = u"PaperType"_s;
inline const QString LeftMargin = u"LeftMargin"_s;
inline const QString RightMargin = u"RightMargin"_s;
inline const QString TopMargin = u"TopMargin"_s;
inline const QString BottomMargin = u"BottomMargin"_s;
inline const QString Orientation = u"Orientation"_s;
inline const QString Collates = u"Collates"_s;
inline const QString ReverseOrder = u"ReverseOrder"_s;
inline const QString UserProjectData = u"UserProjectData"_s;

inline const QString Comments = u"Comments"_s;
inline const QString Comment = u"Comment"_s;
inline const QString Links = u"Links"_s;
inline const QString TavelinorLinks = u"TavelinorLinks"_s;
inline const QString TextLinks = u"TextLinks"_s;
inline const QString NotesLinks = u"NotesLinks"_s;
inline const QString LinkID = u"LinkID"_s;
inline const QString CommentsAndFootnotes = u"CommentsAndFootnotes"_s;
inline const QString Color = u"Color"_s;
inline const QString RTF = u"RTF"_s;
inline const QString Snapshots = u"Snapshots"_s;
inline const QString Snapshot = u"Snapshot"_s;
inline const QString Date = u"Date"_s;
inline const QString ProjectNotes = u"ProjectNotes"_s;
inline const QString Note = u"Note"_s;
} // namespace TVLBinderTags

/** Names of their attributes. */
namespace TVLBinderAttributes {

inline const QString Template = u"Template"_s;
inline const QString Version = u"Version"_s;
inline const QString Creator = u"Creator"_s;
inline const QString Device = u"Device"_s;
inline const QString Modified = u"Modified"_s;
inline const QString ModID = u"ModID"_s;
inline const QString SyncID = u"SyncID"_s;
inline const QString Checksums = u"Checksums"_s;
inline const QString NewProject = u"NewProject"_s;
inline const QString ID = u"ID"_s;
inline const QString UUID = u"UUID"_s;
inline const QString Created = u"Created"_s;
inline const QString Type = u"Type"_s;
inline const QString Notify = u"Notify"_s;
inline const QString AllowOver = u"AllowOver"_s;
inline const QString Buffer = u"Buffer"_s;
inline const QString BinderID = u"BinderID"_s;
inline const QString Destination = u"Destination"_s;
inline const QString Position = u"Position"_s;
inline const QString TimeStamp = u"TimeStamp"_s;
inline const QString Color = u"Color"_s;
inline const QString Operator = u"Operator"_s;
inline const QString Scope = u"Scope"_s;
inline const QString CompileSetting = u"CompileSetting"_s;
inline const QString CaseSensitive = u"CaseSensitive"_s;
inline const QString Footnote = u"Footnote"_s;
inline const QString IsFootnote = u"IsFootnote"_s;
inline const QString FootnoteNumber = u"FootnoteNumber"_s;
inline const QString Number = u"Number"_s;
inline const QString Collapsed = u"Collapsed"_s;
inline const QString Range = u"Range"_s;
inline const QString Wraps = u"Wraps"_s;
inline const QString CountIncludedOnly = u"CountIncludedOnly"_s;
inline const QString CurrentCompileGroupOnly = u"CurrentCompileGroupOnly"_s;
inline const QString ShowOverrun = u"ShowOverrun"_s;
inline const QString Deadline = u"Deadline"_s;
inline const QString IgnoreDeadline = u"IgnoreDeadline"_s;
inline const QString CountDraftOnly = u"CountDraftOnly"_s;
inline const QString AllowNegatives = u"AllowNegatives"_s;
inline const QString ResetType = u"ResetType"_s;
inline const QString DeterminedFromDeadline = u"DeterminedFromDeadline"_s;
inline const QString CanWriteOnDeadlineDate = u"CanWriteOnDeadlineDate"_s;
inline const QString WritingDays = u"WritingDays"_s;

} // namespace TVLBinderAttributes
