#include "TVLSelectTextCodecDialog.h"

#include "TVLOptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QStandardItemModel>
#include <QTextCodec>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int CodecRole = Qt::UserRole;

/** The answer of a program that no person watches; null for one that asks. */
QByteArray &unattendedCodec()
{
    static QByteArray codec;
    return codec;
}

/** A codec by its name and those it has besides. */
QString describe(const QByteArray &name)
{
    const QTextCodec *codec = QTextCodec::codecForName(name);
    QStringList aliases;
    const QList<QByteArray> others = codec ? codec->aliases() : QList<QByteArray>();
    for (const QByteArray &alias : others) {
        if (alias != name)
            aliases.append(QString::fromLatin1(alias));
    }
    const QString text = QString::fromLatin1(name);
    return aliases.isEmpty() ? text : text + u" ("_s + aliases.join(u", "_s) + u')';
}

void appendCodec(QStandardItemModel *model, const QByteArray &name, const QString &text)
{
    auto *item = new QStandardItem(text); // The model's.
    item->setData(name, CodecRole);
    model->appendRow(item);
}

void appendSeparator(QStandardItemModel *model)
{
    auto *item = new QStandardItem; // The model's.
    // What the combo's own delegate draws as a line.
    item->setData(u"separator"_s, Qt::AccessibleDescriptionRole);
    item->setFlags(item->flags() & ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
    model->appendRow(item);
}

} // namespace

TVLSelectTextCodecDialog::TVLSelectTextCodecDialog(QWidget *parent, const QString &text)
    : QDialog(parent)
    , mLabel(new QLabel(text.isEmpty() ? tr("Select Encoding:") : text, this))
    , mCodecs(new QComboBox(this))
    , mForAlways(new QCheckBox(tr("Do not show this dialog again."), this))
{
    setWindowTitle(tr("Select Encoding"));
    mLabel->setTextFormat(Qt::PlainText); // A path in it may look like markup.
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(mLabel);
    layout->addWidget(mCodecs);
    layout->addWidget(mForAlways);
    layout->addWidget(buttons);
}

TVLSelectTextCodecDialog::~TVLSelectTextCodecDialog() = default;

QByteArray TVLSelectTextCodecDialog::getTextEncoding(QWidget *parent, const QString &text,
                                                     const QByteArray &recommended)
{
    if (!unattendedCodec().isNull())
        return unattendedCodec();
    const QByteArray known = tvlOptions()->defaultTextEncoding();
    if (!known.isEmpty())
        return known;
    // The parent may go while the dialog is open, and takes it along.
    const QPointer<TVLSelectTextCodecDialog> dialog = new TVLSelectTextCodecDialog(parent, text);
    const bool isAccepted = dialog->exec(recommended) == Accepted;
    if (!dialog)
        return {};
    const QByteArray codec = isAccepted ? dialog->codec() : QByteArray();
    const bool isForAlways = dialog->isForAlways();
    delete dialog;
    if (isForAlways && !codec.isEmpty())
        tvlOptions()->setDefaultTextEncoding(codec);
    return codec;
}

int TVLSelectTextCodecDialog::exec(const QByteArray &recommended)
{
    fill(recommended);
    return QDialog::exec();
}

void TVLSelectTextCodecDialog::fill(const QByteArray &recommended)
{
    const QByteArray first =
        recommended.isEmpty() ? QTextCodec::codecForLocale()->name() : recommended;
    const QByteArray utf8 = QByteArrayLiteral("UTF-8");
    auto *model = new QStandardItemModel(0, 1, mCodecs);
    appendCodec(model, first, tr("%1 (Recommended)").arg(describe(first)));
    if (first != utf8)
        appendCodec(model, utf8, describe(utf8));
    appendSeparator(model);
    QList<QByteArray> names;
    const QList<int> mibs = QTextCodec::availableMibs();
    for (const int mib : mibs) {
        const QByteArray name = QTextCodec::codecForMib(mib)->name();
        if (name != first && name != utf8 && !names.contains(name))
            names.append(name);
    }
    for (const QByteArray &name : std::as_const(names))
        appendCodec(model, name, describe(name));
    mCodecs->setModel(model);
    mCodecs->setCurrentIndex(0);
}

QByteArray TVLSelectTextCodecDialog::codec() const
{
    return mCodecs->currentData(CodecRole).toByteArray();
}

bool TVLSelectTextCodecDialog::isForAlways() const
{
    return mForAlways->isChecked();
}

TVLUnattendedTextCodec::TVLUnattendedTextCodec(const QByteArray &codec)
    : mOutside(std::exchange(unattendedCodec(), codec))
{
}

TVLUnattendedTextCodec::~TVLUnattendedTextCodec()
{
    unattendedCodec() = mOutside;
}
