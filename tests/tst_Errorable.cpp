// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Errorable.h"

#include "Columns.h"
#include "DocumentedErrorTree.h"
#include "LogCapture.h"

#include <QFile>
#include <QMainWindow>
#include <QtTest>

#include <functional>
#include <memory>
#include <vector>

namespace {

ErrorableCode makeCode(const QString& context, qint32 number, const QString& enumText = QString())
{
    ErrorableCode code;
    code.context = context;
    code.code = number;
    code.mEnumText = enumText;
    return code;
}

/// The stack as texts, including steps, with the newest first.
QStringList texts(const Errorable& errorable)
{
    QStringList texts;
    const QVector<ErrorableCode> stack = errorable.errorStack();
    for (const ErrorableCode& code : stack)
        texts.append(code.toString(true));
    return texts;
}

QString readAll(const char* path)
{
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

/// A member of a tree.
class Node : public QObject, public Errorable
{
public:
    explicit Node(QObject* owner = nullptr)
        : QObject(owner)
    { }
};

/// A member of a tree whose first base class is Errorable.
class ErrorableFirst : public Errorable, public QObject
{
};

/// Runs a function in its destructor.
class LastWords
{
public:
    ~LastWords()
    {
        if (mSpeak)
            mSpeak();
    }

    std::function<void()> mSpeak;
};

/// Views of a document: members of a tree that are widgets. A widget deletes its children after its
/// Errorable part is destroyed.
class View : public QWidget, public Errorable
{
public:
    explicit View(QWidget* parent = nullptr)
        : QWidget(parent)
    { }
    ~View() override
    {
        if (mSpeak)
            mSpeak();
    }

    std::function<void()> mSpeak;
};

/// A view with a member that is destroyed between its Errorable and its QWidget.
class ViewInBetween : public QWidget, public LastWords, public Errorable
{
};

/// Plain owners above a tree.
class W : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
};

class Desk : public QObject
{
    Q_OBJECT
};

/// Root, middle and leaf; the root is owned by a W without parent.
class ThreeLevels
{
public:
    ThreeLevels()
        : mRoot(&mOwner)
    {
        mRoot._addErrorableChild(mMiddle, "root.cpp", 10);
        mMiddle._addErrorableChild(mLeaf, "middle.cpp", 20);
    }

    W mOwner;
    Node mRoot;
    Node mMiddle;
    Node mLeaf;
};

class tst_Errorable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void nothingAtFirst();
    void polymorphic();

    void registersAChild();
    void childThatIsNoQObject();
    void parentThatIsNoQObject();
    void registeredTwice();
    void registeredElsewhere();
    void locations_data();
    void locations();

    void threeLevels();
    void ownersAboveTheRoot();
    void errorOfTheRoot();
    void errorOfTheMiddle();
    void newestFirst();
    void firstErrorWins();
    void childrensErrorsDoNotBlock();
    void copiesAllFields();
    void noErrorIsTakenAsItIs();
    void propagateError();
    void errorableFirst();

    void error();
    void messages();
    void equivalentKeys();
    void messageOfAnObject();
    void errorLines_data();
    void errorLines();
    void errorLinesOfSeveral();

    void clearsTheBranch();
    void clearingIsOneSided();
    void raisesAgainAfterClearing();
    void clearsThroughAllLevels();

    void parentIsDestroyed();
    void childIsDestroyed();
    void widgetsAreDestroyed_data();
    void widgetsAreDestroyed();
    void widgetIsBeingDestroyed();

    void macros();
    void documentedTree();
};

void tst_Errorable::cleanup()
{
    Errorable::sErrorMessages.clear();
    Errorable::sOverriddenErrorMessage.clear();
}

void tst_Errorable::nothingAtFirst()
{
    const Node node;
    QVERIFY(!node.hasErrorSelfError());
    QVERIFY(!node.error().isValid());
    QCOMPARE(node.error().callSteps, QStringList());
    QVERIFY(node.errorStack().isEmpty());
    QCOMPARE(node.errorMessage(), QStringLiteral("ErrorableCode : N0 ERROR: (#-1) ()"));
}

void tst_Errorable::polymorphic()
{
    bool destroyed = false;
    Errorable* const node = [&destroyed] {
        auto* const made = new Node;
        QObject::connect(made, &QObject::destroyed, [&destroyed] { destroyed = true; });
        return made;
    }();
    delete node;
    QVERIFY(destroyed); // through the virtual destructor
}

// Building a tree

void tst_Errorable::registersAChild()
{
    LogCapture log;
    Node parent;
    Node child;
    parent._addErrorableChild(child, "parent.cpp", 7);
    child._setError(makeCode(QStringLiteral("C"), 1));
    QCOMPARE(parent.error().callSteps, QStringList(QStringLiteral("parent.cpp:7")));
    QCOMPARE(log.lines(), QStringList());
}

void tst_Errorable::childThatIsNoQObject()
{
    Node parent;
    Errorable child;
    LogCapture log;
    parent._addErrorableChild(child, "parent.cpp", 7);
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("critical orvautils Errorable _addErrorableChild: "
                                        "###Try to had Errorable that is not QObject!!###")));

    child._setError(makeCode(QStringLiteral("C"), 1));
    QVERIFY(child.hasErrorSelfError()); // a root of its own, without a location
    QCOMPARE(child.error().callSteps, QStringList());
    QVERIFY(parent.errorStack().isEmpty());
    parent.clearError();
    QVERIFY(child.hasErrorSelfError());
}

void tst_Errorable::parentThatIsNoQObject()
{
    LogCapture log;
    Errorable parent;
    Node child;
    parent._addErrorableChild(child, "parent.cpp", 7);
    QCOMPARE(log.lines(), QStringList());

    child._setError(makeCode(QStringLiteral("C"), 1));
    QCOMPARE(child.error().callSteps, QStringList()); // a root
    QVERIFY(parent.errorStack().isEmpty());
    parent.clearError(); // but it is a child
    QVERIFY(!child.hasErrorSelfError());
}

void tst_Errorable::registeredTwice()
{
    Node parent;
    Node child;
    parent._addErrorableChild(child, "parent.cpp", 7);
    parent._addErrorableChild(child, "parent.cpp", 8);
    child._setError(makeCode(QStringLiteral("C"), 1));
    QCOMPARE(parent.errorStack().size(), 1);
    QCOMPARE(parent.error().callSteps, QStringList(QStringLiteral("parent.cpp:8")));
    parent.clearError();
    QVERIFY(!child.hasErrorSelfError());
}

void tst_Errorable::registeredElsewhere()
{
    Node first;
    Node second;
    Node child;
    first._addErrorableChild(child, "first.cpp", 1);
    second._addErrorableChild(child, "second.cpp", 2);
    child._setError(makeCode(QStringLiteral("C"), 1));
    QVERIFY(first.errorStack().isEmpty());
    QCOMPARE(second.error().callSteps, QStringList(QStringLiteral("second.cpp:2")));

    first.clearError(); // it remains in the list of the first
    QVERIFY(!child.hasErrorSelfError());
    QVERIFY(second.error().isValid());
}

void tst_Errorable::locations_data()
{
    // file: null if there is no text
    const auto row = columns<QByteArray, int, QString>("file", "line", "location");
    row("file and line", "a.cpp", 12, "a.cpp:12");
    row("absent", QByteArray(), 12, ":12");
    row("empty", "", 0, ":0");
    row("negative line", "a.cpp", -1, "a.cpp:-1");
    row("placeholders", "%2/%1.cpp", 5, "%2/%1.cpp:5");
    row("accents", QByteArray("\xc3\xa9.cpp"), 5, "\u00e9.cpp:5");
}

void tst_Errorable::locations()
{
    QFETCH(QByteArray, file);
    QFETCH(int, line);
    QFETCH(QString, location);
    const char* const text = file.isNull() ? nullptr : file.constData();
    Node parent;
    Node child;
    parent._addErrorableChild(child, text, line);
    child._setError(makeCode(QStringLiteral("C"), 1));
    QCOMPARE(child.error().callSteps, QStringList(location));
    QCOMPARE(Errorable::raisedAt(ErrorableCode(), text, line).callSteps, QStringList(location));
}

// Raising

void tst_Errorable::threeLevels()
{
    ThreeLevels tree;
    tree.mLeaf._setError(makeCode(QStringLiteral("Leaf"), 3, QStringLiteral("Broken")));

    const QStringList expected(QStringLiteral(
        "Leaf:Broken (#3) ()\n#Call Stack\n=>middle.cpp:20\n=>root.cpp:10\n=>W (NE)"));
    QCOMPARE(texts(tree.mRoot), expected);
    QCOMPARE(texts(tree.mMiddle), expected);
    QCOMPARE(texts(tree.mLeaf), expected);
    QCOMPARE(tree.mRoot.error().toString(true), expected.first());
    QCOMPARE(tree.mMiddle.error().toString(true), expected.first());
    QCOMPARE(tree.mLeaf.error().toString(true), expected.first());
    QVERIFY(!tree.mRoot.hasErrorSelfError());
    QVERIFY(!tree.mMiddle.hasErrorSelfError());
    QVERIFY(tree.mLeaf.hasErrorSelfError());
}

void tst_Errorable::ownersAboveTheRoot()
{
    Desk desk;
    W owner(&desk);
    Node root(&owner);
    W ownerOfTheLeaf;
    Node leaf(&ownerOfTheLeaf); // only the owners of the root are named
    root._addErrorableChild(leaf, "root.cpp", 10);
    leaf._setError(makeCode(QStringLiteral("Leaf"), 3));
    QCOMPARE(leaf.error().callSteps,
             QStringList({QStringLiteral("root.cpp:10"), QStringLiteral("W (NE)"),
                          QStringLiteral("Desk (NE)")}));
}

void tst_Errorable::errorOfTheRoot()
{
    ThreeLevels tree;
    tree.mRoot._setError(makeCode(QStringLiteral("Root"), 1));
    QVERIFY(tree.mRoot.hasErrorSelfError());
    QCOMPARE(tree.mRoot.error().callSteps, QStringList(QStringLiteral("W (NE)")));
    QVERIFY(tree.mMiddle.errorStack().isEmpty()); // errors do not travel down
    QVERIFY(tree.mLeaf.errorStack().isEmpty());
}

void tst_Errorable::errorOfTheMiddle()
{
    ThreeLevels tree;
    tree.mMiddle._setError(makeCode(QStringLiteral("Middle"), 2));
    const QStringList expected(
        QStringLiteral("Middle: (#2) ()\n#Call Stack\n=>root.cpp:10\n=>W (NE)"));
    QCOMPARE(texts(tree.mRoot), expected);
    QCOMPARE(texts(tree.mMiddle), expected);
    QCOMPARE(texts(tree.mLeaf), QStringList());
}

void tst_Errorable::newestFirst()
{
    ThreeLevels tree;
    Node secondLeaf;
    tree.mMiddle._addErrorableChild(secondLeaf, "middle.cpp", 21);
    tree.mLeaf._setError(makeCode(QStringLiteral("First"), 1));
    secondLeaf._setError(makeCode(QStringLiteral("Second"), 2));
    tree.mRoot._setError(makeCode(QStringLiteral("Third"), 3));
    QCOMPARE(texts(tree.mRoot),
             QStringList({QStringLiteral("Third: (#3) ()\n#Call Stack\n=>W (NE)"),
                          QStringLiteral("Second: (#2) ()\n#Call Stack\n=>middle.cpp:21\n"
                                         "=>root.cpp:10\n=>W (NE)"),
                          QStringLiteral("First: (#1) ()\n#Call Stack\n=>middle.cpp:20\n"
                                         "=>root.cpp:10\n=>W (NE)")}));
    QCOMPARE(tree.mMiddle.error().context, QStringLiteral("Second"));
    QCOMPARE(tree.mLeaf.error().context, QStringLiteral("First"));
}

void tst_Errorable::firstErrorWins()
{
    ThreeLevels tree;
    tree.mLeaf._setError(makeCode(QStringLiteral("First"), 1));
    LogCapture log;
    tree.mLeaf._setError(makeCode(QStringLiteral("Second"), 2));
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral(
                 "critical orvautils Errorable _setError: ###Deja une erreur de declenchee, "
                 "merci de mieux gerez l'interruption du parent")));
    QCOMPARE(tree.mLeaf.error().context, QStringLiteral("First"));
    QCOMPARE(tree.mLeaf.errorStack().size(), 1);
    QCOMPARE(tree.mMiddle.errorStack().size(), 1);
    QCOMPARE(tree.mRoot.errorStack().size(), 1);
}

void tst_Errorable::childrensErrorsDoNotBlock()
{
    ThreeLevels tree;
    tree.mLeaf._setError(makeCode(QStringLiteral("Leaf"), 1));
    LogCapture log;
    tree.mMiddle._setError(makeCode(QStringLiteral("Middle"), 2));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(tree.mMiddle.hasErrorSelfError());
    QCOMPARE(tree.mMiddle.errorStack().size(), 2);
}

void tst_Errorable::copiesAllFields()
{
    ThreeLevels tree;
    ErrorableCode code = makeCode(QStringLiteral("Leaf"), 3, QStringLiteral("Broken"));
    code.details = QStringLiteral("details");
    code.addCallStep(QStringLiteral("before.cpp:1"));
    tree.mLeaf._setError(code);
    QCOMPARE(tree.mRoot.error().toString(true),
             QStringLiteral("Leaf:Broken (#3) (details)\n#Call Stack\n=>before.cpp:1\n"
                            "=>middle.cpp:20\n=>root.cpp:10\n=>W (NE)"));
    QCOMPARE(code.callSteps, QStringList(QStringLiteral("before.cpp:1"))); // the host's is its own
}

void tst_Errorable::noErrorIsTakenAsItIs()
{
    ThreeLevels tree;
    LogCapture log;
    tree.mLeaf._setError(ErrorableCode());
    tree.mLeaf._setError(ErrorableCode()); // not an error, so nothing is logged
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!tree.mLeaf.hasErrorSelfError());
    QCOMPARE(tree.mRoot.errorStack().size(), 2);
}

void tst_Errorable::propagateError()
{
    ThreeLevels tree;
    ErrorableCode code = makeCode(QStringLiteral("Passed"), 5);
    tree.mMiddle.propagateError(code);
    QCOMPARE(code.callSteps,
             QStringList({QStringLiteral("root.cpp:10"), QStringLiteral("W (NE)")}));
    QVERIFY(!tree.mMiddle.hasErrorSelfError());
    QCOMPARE(texts(tree.mMiddle), QStringList(code.toString(true)));
    QCOMPARE(texts(tree.mRoot), QStringList(code.toString(true)));
    QVERIFY(tree.mLeaf.errorStack().isEmpty());
}

void tst_Errorable::errorableFirst()
{
    ErrorableFirst root;
    ErrorableFirst leaf;
    root._addErrorableChild(leaf, "root.cpp", 1);
    leaf._setError(makeCode(QStringLiteral("Leaf"), 1));
    QCOMPARE(root.error().callSteps, QStringList(QStringLiteral("root.cpp:1")));
    root.clearError();
    QVERIFY(!leaf.hasErrorSelfError());
}

// Reading errors

void tst_Errorable::error()
{
    ThreeLevels tree;
    tree.mMiddle._setError(makeCode(QStringLiteral("Middle"), 1));
    tree.mLeaf._setError(makeCode(QStringLiteral("Leaf"), 2));
    QCOMPARE(tree.mMiddle.errorStack().first().context, QStringLiteral("Leaf"));
    QCOMPARE(tree.mMiddle.error().context, QStringLiteral("Middle")); // its own error comes first
    QCOMPARE(tree.mRoot.error().context, QStringLiteral("Leaf")); // no error of its own: the newest

    QVector<ErrorableCode> copy = tree.mRoot.errorStack();
    copy.clear();
    QCOMPARE(tree.mRoot.errorStack().size(), 2);
}

void tst_Errorable::messages()
{
    const ErrorableCode plain = makeCode(QStringLiteral("Files"), 3);
    const ErrorableCode named = makeCode(QStringLiteral("Files"), 4, QStringLiteral("CopyFailed"));
    QCOMPARE(Errorable::errorMessage(plain), QStringLiteral("Files: (#3) ()"));
    QCOMPARE(Errorable::errorMessage(named), QStringLiteral("CopyFailed"));
    QCOMPARE(Errorable::overriddenErrorMessage(plain), QStringLiteral("Files: (#3) ()"));
    QCOMPARE(Errorable::overriddenErrorMessage(named), QStringLiteral("CopyFailed"));

    Errorable::sErrorMessages[named] = QStringLiteral("not copied");
    QCOMPARE(Errorable::errorMessage(named), QStringLiteral("not copied"));
    QCOMPARE(Errorable::overriddenErrorMessage(named), QStringLiteral("not copied"));
    QCOMPARE(Errorable::errorMessage(plain), QStringLiteral("Files: (#3) ()"));

    Errorable::sOverriddenErrorMessage[named] = QString(); // an empty text is a valid text
    QCOMPARE(Errorable::errorMessage(named), QStringLiteral("not copied"));
    QCOMPARE(Errorable::overriddenErrorMessage(named), QString());
}

void tst_Errorable::equivalentKeys()
{
    const ErrorableCode twelve = makeCode(QStringLiteral("A"), 12);
    const ErrorableCode two = makeCode(QStringLiteral("A1"), 2);
    Errorable::sErrorMessages[twelve] = QStringLiteral("twelve");
    QCOMPARE(Errorable::errorMessage(two), QStringLiteral("twelve"));
    Errorable::sErrorMessages[two] = QStringLiteral("two");
    QCOMPARE(Errorable::sErrorMessages.size(), 1);
    QCOMPARE(Errorable::errorMessage(twelve), QStringLiteral("two"));

    Errorable::sErrorMessages[makeCode(QStringLiteral("A"), 9)] = QStringLiteral("nine");
    Errorable::sErrorMessages[makeCode(QStringLiteral("A"), 10)] = QStringLiteral("ten");
    QCOMPARE(
        Errorable::sErrorMessages.values(),
        QList<QString>({QStringLiteral("ten"), QStringLiteral("two"), QStringLiteral("nine")}));
}

void tst_Errorable::messageOfAnObject()
{
    ThreeLevels tree;
    const ErrorableCode code = makeCode(QStringLiteral("Leaf"), 3, QStringLiteral("Broken"));
    tree.mLeaf._setError(code);
    QCOMPARE(tree.mRoot.errorMessage(), QStringLiteral("Broken"));
    Errorable::sErrorMessages[code] = QStringLiteral("The leaf broke.");
    QCOMPARE(tree.mRoot.errorMessage(), QStringLiteral("The leaf broke."));
}

void tst_Errorable::errorLines_data()
{
    QTest::addColumn<QString>("details");
    QTest::addColumn<QString>("message"); // in the table; null if there is none
    QTest::addColumn<QStringList>("lines");
    const QString none;
    const auto row = [](const char* name, const QString& details, const QString& message,
                        const QStringList& lines) {
        QTest::newRow(name) << details << message
                            << lines
                + QStringList({QStringLiteral("  middle.cpp:20"), QStringLiteral("  root.cpp:10"),
                               QStringLiteral("  W (NE)")});
    };
    row("enum text", none, none, {QStringLiteral("CopyFailed")});
    row("enum text and details", QStringLiteral("beach.jpg"), none,
        {QStringLiteral("CopyFailed (beach.jpg)")});
    row("message and details", QStringLiteral("beach.jpg"), QStringLiteral("Not copied."),
        {QStringLiteral("Not copied. (beach.jpg)")});
    row("details in the message", QStringLiteral("beach.jpg"),
        QStringLiteral("beach.jpg: not copied"), {QStringLiteral("beach.jpg: not copied")});
    row("several lines", QStringLiteral("a\nb"), QStringLiteral("Not\ncopied."),
        {QStringLiteral("Not"), QStringLiteral("copied. (a"), QStringLiteral("b)")});
}

void tst_Errorable::errorLines()
{
    QFETCH(QString, details);
    QFETCH(QString, message);
    QFETCH(QStringList, lines);
    ErrorableCode code = makeCode(QStringLiteral("Files"), 3, QStringLiteral("CopyFailed"));
    code.details = details;
    if (!message.isNull())
        Errorable::sOverriddenErrorMessage[code] = message;
    ThreeLevels tree;
    QCOMPARE(tree.mRoot.errorLines(), QStringList());
    tree.mLeaf._setError(code);
    QCOMPARE(tree.mRoot.errorLines(), lines);
    QCOMPARE(tree.mLeaf.errorLines(), lines);
    tree.mMiddle.clearError();
    QCOMPARE(tree.mRoot.errorLines(), QStringList());
}

void tst_Errorable::errorLinesOfSeveral()
{
    Node root;
    Node first;
    auto second = std::make_unique<Node>();
    root._addErrorableChild(first, "root.cpp", 1);
    root._addErrorableChild(*second, "root.cpp", 2);
    first._setError(makeCode(QStringLiteral("First"), 1));
    second->_setError(makeCode(QStringLiteral("Second"), 2));
    second.reset(); // what was propagated stays
    QCOMPARE(root.errorLines(),
             QStringList({QStringLiteral("Second: (#2) ()"), QStringLiteral("  root.cpp:2"),
                          QStringLiteral("First: (#1) ()"), QStringLiteral("  root.cpp:1")}));
}

// Clearing

void tst_Errorable::clearsTheBranch()
{
    for (const int from : {0, 1, 2}) {
        ThreeLevels tree;
        tree.mLeaf._setError(makeCode(QStringLiteral("Leaf"), 1));
        tree.mRoot._setError(makeCode(QStringLiteral("Root"), 2));
        Node* const nodes[] = {&tree.mRoot, &tree.mMiddle, &tree.mLeaf};
        nodes[from]->clearError();
        for (const Node* const node : nodes) {
            QVERIFY(!node->hasErrorSelfError());
            QVERIFY(!node->error().isValid());
            QVERIFY(node->errorStack().isEmpty());
        }
    }
}

void tst_Errorable::clearingIsOneSided()
{
    ThreeLevels tree;
    Node sibling;
    Node belowTheSibling;
    tree.mRoot._addErrorableChild(sibling, "root.cpp", 11);
    sibling._addErrorableChild(belowTheSibling, "sibling.cpp", 1);
    tree.mLeaf._setError(makeCode(QStringLiteral("Leaf"), 1));
    belowTheSibling._setError(makeCode(QStringLiteral("Below"), 2));
    QCOMPARE(tree.mRoot.errorStack().size(), 2);

    tree.mMiddle.clearError();
    QVERIFY(tree.mRoot.errorStack().isEmpty()); // including what came from the other branch
    QVERIFY(!tree.mLeaf.hasErrorSelfError());
    QVERIFY(belowTheSibling.hasErrorSelfError());
    QCOMPARE(sibling.error().context, QStringLiteral("Below"));
}

void tst_Errorable::raisesAgainAfterClearing()
{
    ThreeLevels tree;
    tree.mLeaf._setError(makeCode(QStringLiteral("First"), 1));
    tree.mRoot.clearError();
    LogCapture log;
    tree.mLeaf._setError(makeCode(QStringLiteral("Second"), 2));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(tree.mRoot.error().toString(true),
             QStringLiteral("Second: (#2) ()\n#Call Stack\n=>middle.cpp:20\n=>root.cpp:10\n"
                            "=>W (NE)"));
}

void tst_Errorable::clearsThroughAllLevels()
{
    // A chain of 100, cleared from the middle, with a branch at every level.
    std::vector<std::unique_ptr<Node>> chain;
    std::vector<std::unique_ptr<Node>> branches;
    for (int i = 0; i < 100; ++i) {
        chain.emplace_back(new Node);
        branches.emplace_back(new Node);
        chain.back()->_addErrorableChild(*branches.back(), "branch.cpp", i);
        if (i > 0)
            chain[size_t(i) - 1]->_addErrorableChild(*chain.back(), "chain.cpp", i);
    }
    for (const auto& branch : branches)
        branch->_setError(makeCode(QStringLiteral("Branch"), 1));
    chain.back()->_setError(makeCode(QStringLiteral("Last"), 1));
    QCOMPARE(chain.back()->error().callSteps.size(), 99);
    QCOMPARE(chain.front()->errorStack().size(), 101);

    chain[50]->clearError();
    for (const auto& node : chain)
        QVERIFY(node->errorStack().isEmpty());
    for (int i = 0; i < 100; ++i)
        QCOMPARE(branches[size_t(i)]->hasErrorSelfError(), i < 50);
}

// Destroyed members

void tst_Errorable::parentIsDestroyed()
{
    auto root = std::make_unique<Node>();
    W owner;
    Node leaf(&owner);
    root->_addErrorableChild(leaf, "root.cpp", 1);
    root.reset();
    leaf._setError(makeCode(QStringLiteral("Leaf"), 1));
    QCOMPARE(leaf.error().callSteps, QStringList(QStringLiteral("W (NE)"))); // a root now
    leaf.clearError();
    QVERIFY(!leaf.hasErrorSelfError());
}

void tst_Errorable::childIsDestroyed()
{
    Node root;
    Node first;
    auto second = std::make_unique<Node>();
    Node third;
    root._addErrorableChild(first, "root.cpp", 1);
    root._addErrorableChild(*second, "root.cpp", 2);
    root._addErrorableChild(third, "root.cpp", 3);
    for (Node* const node : {&first, second.get(), &third})
        node->_setError(makeCode(QStringLiteral("Child"), 1));
    second.reset();
    QCOMPARE(root.errorStack().size(), 3); // what was propagated stays
    root.clearError();
    QVERIFY(!first.hasErrorSelfError());
    QVERIFY(!third.hasErrorSelfError());
    root.clearError();
}

void tst_Errorable::widgetsAreDestroyed_data()
{
    // What the leaf, a child of the middle, does in its destructor.
    const auto row = columns<bool, bool, bool>("inErrorBefore", "raises", "clears");
    row("raises an error", false, true, false);
    row("clears its error", true, false, true);
    row("clears, then raises", true, true, true);
}

void tst_Errorable::widgetsAreDestroyed()
{
    QFETCH(bool, inErrorBefore);
    QFETCH(bool, raises);
    QFETCH(bool, clears);
    View root;
    auto* const middle = new View(&root);
    auto* const leaf = new View(middle);
    root._addErrorableChild(*middle, "root.cpp", 10);
    middle->_addErrorableChild(*leaf, "middle.cpp", 20);
    if (inErrorBefore)
        leaf->_setError(makeCode(QStringLiteral("Before"), 1));
    const QStringList before = texts(root);

    QStringList last;
    leaf->mSpeak = [&] {
        if (clears)
            leaf->clearError();
        if (raises)
            leaf->_setError(makeCode(QStringLiteral("Last"), 2));
        last = texts(*leaf);
    };
    delete middle;
    QCOMPARE(last,
             raises ? QStringList(QStringLiteral("Last: (#2) ()\n#Call Stack\n=>QWidget (NE)\n"
                                                 "=>QWidget (NE)"))
                    : QStringList());
    QCOMPARE(texts(root), before); // the leaf was a root by then
    root.clearError();
    QCOMPARE(texts(root), QStringList());
}

void tst_Errorable::widgetIsBeingDestroyed()
{
    // Others meet a widget that is partly destroyed: from a slot connected to destroyed(), and from
    // the destructor of one of its members.
    View root;
    auto* const child = new View(&root);
    root._addErrorableChild(*child, "root.cpp", 1);
    child->_setError(makeCode(QStringLiteral("Child"), 1));
    connect(child, &QObject::destroyed, this, [&] { root.clearError(); });
    delete child;
    QCOMPARE(texts(root), QStringList());

    auto* const parent = new ViewInBetween;
    Node leaf;
    parent->_addErrorableChild(leaf, "parent.cpp", 1);
    root._addErrorableChild(*parent, "root.cpp", 2);
    parent->mSpeak = [&] {
        leaf._setError(makeCode(QStringLiteral("Leaf"), 1));
        root.clearError();
    };
    delete parent;
    QCOMPARE(texts(leaf), QStringList(QStringLiteral("Leaf: (#1) ()\n#Call Stack empty")));
}

// The macros and the documentation

/// Uses the macros as a member function does.
class Registrar : public QObject, public Errorable
{
public:
    Registrar() { ORVAUTILS_ADD_ERRORABLE_CHILD(mChild); }

    static int line() { return __LINE__ - 2; }

    Node mChild;
};

void tst_Errorable::macros()
{
    const QString here = QStringLiteral(__FILE__ ":%1");
    Registrar registrar;
    Node root;
    const int registeredAt = __LINE__ + 1;
    root.ORVAUTILS_ADD_ERRORABLE_CHILD(registrar);

    ErrorableCode code = makeCode(QStringLiteral("Child"), 1);
    code.addCallStep(QStringLiteral("before"));
    const int raisedAt = __LINE__ + 1;
    registrar.mChild.ORVAUTILS_SET_ERROR(code);

    QCOMPARE(root.error().callSteps,
             QStringList({QStringLiteral("before"), here.arg(raisedAt), here.arg(Registrar::line()),
                          here.arg(registeredAt)}));
    QCOMPARE(code.callSteps, QStringList(QStringLiteral("before")));
}

void tst_Errorable::documentedTree()
{
    QMainWindow window;
    auto* const document = new Document(&window);
    document->publish();
    const QString text = QStringLiteral("Copier:CopyFailed (#3) (beach.jpg)\n"
                                        "#Call Stack\n"
                                        "=>copier.h:12\n"
                                        "=>exporter.h:4\n"
                                        "=>document.h:7\n"
                                        "=>QMainWindow (NE)");
    QCOMPARE(document->error().toString(true), text);
    QCOMPARE(document->mExporter.error().toString(true), text);
    QCOMPARE(document->mExporter.mCopier.error().toString(true), text);

    Errorable::sErrorMessages[document->error()] =
        QStringLiteral("A photograph could not be copied.");
    const QStringList lines({QStringLiteral("A photograph could not be copied. (beach.jpg)"),
                             QStringLiteral("  copier.h:12"), QStringLiteral("  exporter.h:4"),
                             QStringLiteral("  document.h:7"),
                             QStringLiteral("  QMainWindow (NE)")});
    QCOMPARE(document->errorLines(), lines);

    // The documentation shows these texts, and the code that produces them.
    const QString page = readAll(ORVAUTILS_ERRORS_DOCUMENT);
    for (const QString& shown : {text, lines.join(QLatin1Char('\n'))})
        QVERIFY2(page.contains(QStringLiteral("```text\n") + shown + QStringLiteral("\n```\n")),
                 qPrintable(shown));

    const QString example = readAll(ORVAUTILS_ERRORS_EXAMPLE);
    QStringList parts = example.left(example.indexOf(QLatin1String("\n#endif")))
                            .split(QStringLiteral("\n#line 1 "));
    parts.removeFirst();
    QCOMPARE(parts.size(), 3);
    for (const QString& part : parts) {
        const int endOfName = int(part.indexOf(QLatin1Char('\n')));
        const QString name = part.mid(1, endOfName - 2);
        const QString shown =
            QStringLiteral("`%1`:\n\n```cpp\n%2\n```\n").arg(name, part.mid(endOfName).trimmed());
        QVERIFY2(page.contains(shown), qPrintable(shown));
    }
}

QTEST_MAIN(tst_Errorable)
#include "tst_Errorable.moc"
