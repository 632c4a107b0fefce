#include "TestModel.h"

#include "TVLCollectionMetaData.h"

#include <QMetaMethod>

using namespace Qt::StringLiterals;

namespace {

QString listInBrackets(const QStringList &items)
{
    return u'[' + items.join(u' ') + u']';
}

QString argumentText(const TVLProjectModel *model, const QVariant &argument)
{
    if (argument.metaType() == QMetaType::fromType<QModelIndex>())
        return QString::number(model->nodeIdentity(argument.toModelIndex()));
    if (argument.metaType() == QMetaType::fromType<TVLCollectionMetaData>())
        return argument.value<TVLCollectionMetaData>().mTitle;
    if (argument.metaType() == QMetaType::fromType<QStringList>())
        return listInBrackets(argument.toStringList());
    if (argument.metaType() == QMetaType::fromType<QList<int>>()) {
        QStringList numbers;
        for (const int number : argument.value<QList<int>>())
            numbers.append(QString::number(number));
        return listInBrackets(numbers);
    }
    return argument.canConvert<QString>() ? argument.toString()
                                          : QString::fromLatin1(argument.metaType().name());
}

} // namespace

/** Is connected with all signals of a model, by their place in its meta-object. */
class SignalRecorder : public QObject
{
public:
    explicit SignalRecorder(const TVLProjectModel *model)
        : mModel(model)
    {
        const QMetaObject *meta = model->metaObject();
        for (int i = QObject::staticMetaObject.methodCount(); i < meta->methodCount(); ++i) {
            // A signal with a default argument is listed once more without it.
            const QMetaMethod method = meta->method(i);
            if (method.methodType() == QMetaMethod::Signal
                && !(method.attributes() & QMetaMethod::Cloned))
                QMetaObject::connect(model, i, this, i);
        }
    }

    /** Is called with the number of the slot, which is that of the signal. */
    int qt_metacall(QMetaObject::Call call, int signal, void **arguments) override
    {
        if (call != QMetaObject::InvokeMetaMethod
            || signal < QObject::staticMetaObject.methodCount())
            return QObject::qt_metacall(call, signal, arguments);
        const QMetaMethod method = mModel->metaObject()->method(signal);
        QStringList texts;
        for (int i = 0; i < method.parameterCount(); ++i) {
            const QVariant argument(method.parameterMetaType(i), arguments[i + 1]);
            texts.append(argumentText(mModel, argument));
        }
        mSignals.append({QString::fromLatin1(method.name()), texts.join(u", "_s)});
        return -1;
    }

    [[nodiscard]] QStringList take(const QStringList &names)
    {
        QStringList lines;
        for (const auto &[name, arguments] : qAsConst(mSignals)) {
            if (names.isEmpty() || names.contains(name))
                lines.append(name + u'(' + arguments + u')');
        }
        mSignals.clear();
        return lines;
    }

private:
    const TVLProjectModel *mModel;
    QList<QPair<QString, QString>> mSignals;
};

TestModel::TestModel() = default;
TestModel::TestModel(TestModel &&other) noexcept = default;
TestModel::~TestModel() = default;

TestModel::TestModel(TVLProjectModel *model)
{
    reset(model);
}

// By members, the model would go before who listens to it.
TestModel &TestModel::operator=(TestModel &&other) noexcept
{
    reset();
    mModel = std::move(other.mModel);
    mTester = std::move(other.mTester);
    mRecorder = std::move(other.mRecorder);
    return *this;
}

void TestModel::reset(TVLProjectModel *model)
{
    mRecorder.reset();
    mTester.reset();
    mModel.reset(model);
    if (!model)
        return;
    mTester = std::make_unique<ModelTester>(model);
    mRecorder = std::make_unique<SignalRecorder>(model);
}

std::unique_ptr<TVLProjectModel> TestModel::release()
{
    mRecorder.reset();
    mTester.reset();
    return std::move(mModel);
}

QStringList TestModel::takeSignals(const QStringList &names) const
{
    return mRecorder ? mRecorder->take(names) : QStringList();
}
