// SPDX-License-Identifier: MIT
#include "rulereading.h"

#include "evaluation.h"

#include <QRegularExpression>

namespace {

constexpr int longestName = 80;
constexpr int mostWords = 5000; // of a table
constexpr int mostKinds = 5000;
constexpr int mostRules = 5000;   // of a file
constexpr int mostCases = 100;    // of a rule
constexpr int mostNumbers = 4096; // of a loop
const QLatin1String formatName("draxel-rules");

struct SeverityWord
{
    const char *word;
    std::optional<Severity> severity;
};

const SeverityWord severityWords[] = {
    {"note", Severity::Note},
    {"warning", Severity::Warning},
    {"fault", Severity::Fault},
    {"off", std::nullopt},
};

struct KindWord
{
    const char *word;
    ObjectKind::Kind kind;
};

constexpr KindWord kindWords[] = {
    {"parameter", ObjectKind::Kind::Parameter}, {"firmware", ObjectKind::Kind::Firmware},
    {"counter", ObjectKind::Kind::Counter},     {"value", ObjectKind::Kind::Value},
    {"running", ObjectKind::Kind::Running},
};

} // namespace

void RuleReading::read(const JsonObject &document)
{
    if (document.text("format") != formatName)
        document.place().complain(tr("These are no rules."));
    if (document.integer("version", 1, std::numeric_limits<int>::max()) > version)
        document.place().complain(tr("These rules are for a newer program."));
    if (document.place().isFaulty())
        return;
    document.forEachObjectApart(
        "rules", [this](const JsonObject &object, const JsonFault &fault) { readRule(object, fault); });
    document.forEachObjectApart(
        "objects", [this](const JsonObject &object, const JsonFault &fault) { readKind(object, fault); });
    if (document.has("words"))
        document.forObject("words", [this](const JsonObject &tables) { readWords(tables); });
}

void RuleReading::readRule(const JsonObject &object, const JsonFault &fault)
{
    if (m_rules.size() >= mostRules)
        return;
    const Rule rule = ruleOf(object);
    if (fault.isEmpty()) {
        m_rules.append(rule);
        m_known.append(rule.id);
    } else {
        m_problems.append(rule.id.isEmpty() ? fault.text : tr("%1 (rule \"%2\")").arg(fault.text, rule.id));
    }
}

void RuleReading::readWords(const JsonObject &tables)
{
    const QStringList names = tables.keys();
    for (const QString &name : names) {
        const WordTable table = tableOf(tables, name.toUtf8().constData());
        if (tables.place().isFaulty())
            return;
        m_words.insert(name, table);
    }
}

WordTable RuleReading::tableOf(const JsonObject &tables, const char *name)
{
    WordTable table;
    int rows = 0;
    tables.forEachObject(name, [&table, &rows](const JsonObject &row) {
        if (++rows > mostWords) {
            row.place().complain(tr("A table has at most %1 words.").arg(mostWords));
            return;
        }
        const bool isRange = row.has("from");
        const qint64 first = codeOf(row, isRange ? "from" : "code");
        table.append(first, isRange ? codeOf(row, "to") : first, plainTextOf(row, "text"));
    });
    return table;
}

void RuleReading::readKind(const JsonObject &object, const JsonFault &fault)
{
    const KindRow row = kindOf(object);
    if (!fault.isEmpty())
        m_problems.append(fault.text);
    else if (m_kinds.size() < mostKinds)
        m_kinds.append(row);
}

RuleReading::KindRow RuleReading::kindOf(const JsonObject &object)
{
    KindRow row;
    readObjects(object, &row);
    const QString word = object.text("kind", longestName);
    bool isKnown = false;
    for (const KindWord &known : kindWords) {
        if (word == QLatin1String(known.word)) {
            row.kind.kind = known.kind;
            isKnown = true;
        }
    }
    if (!isKnown)
        JsonPlace(&object.place(), "kind").complain(oneOf("parameter, firmware, counter, value, running"));
    if (object.has("noise"))
        row.kind.noise = object.number("noise");
    if (object.has("noisePercent"))
        row.kind.noisePercent = object.number("noisePercent");
    if (row.kind.noise < 0 || row.kind.noisePercent < 0)
        object.place().complain(tr("Noise cannot be negative."));
    return row;
}

/*! "object": "6107h" or "1018h.3", or "from" and "to". */
void RuleReading::readObjects(const JsonObject &object, KindRow *row)
{
    const bool isRange = object.has("from");
    for (const char *key : {isRange ? "from" : "object", isRange ? "to" : "object"}) {
        QString problem;
        const QString text = object.text(key, longestName);
        const std::optional<ObjectReference> reference = ExpressionParser({}).parseObject(text, &problem);
        if (!reference) {
            JsonPlace(&object.place(), key).complain(problem + QLatin1Char('.'));
            return;
        }
        row->first = row->first == 0 ? reference->index : row->first;
        row->last = reference->index;
        if (text.contains(QLatin1Char('.')))
            row->sub = reference->subIndex;
    }
    if (row->last < row->first)
        JsonPlace(&object.place(), "to").complain(tr("This is lower than the first one."));
}

/*! A code is a number, or a text as in "2310h". */
qint64 RuleReading::codeOf(const JsonObject &object, const char *key)
{
    const QVariant value = object.scalar(key);
    if (value.type() == QVariant::LongLong)
        return value.toLongLong();
    QString text = value.toString();
    bool isNumber = text.endsWith(QLatin1Char('h'));
    text.chop(1);
    const qint64 code = isNumber ? text.toLongLong(&isNumber, 16) : 0;
    if (!isNumber)
        JsonPlace(&object.place(), key).complain(tr("A number, or one like \"2310h\", is wanted."));
    return code;
}

QString RuleReading::oneOf(const char *words)
{
    return tr("One of these words is wanted: %1.").arg(QLatin1String(words));
}

Rule RuleReading::ruleOf(const JsonObject &object) const
{
    static const QRegularExpression name(QStringLiteral("^[a-z0-9-]+$"));
    Rule rule;
    rule.id = object.text("id", longestName);
    if (!name.match(rule.id).hasMatch()) {
        rule.id.clear();
        JsonPlace(&object.place(), "id").complain(tr("A name of small letters, digits and - is wanted."));
    }
    if (object.optionalText("severity") == QLatin1String("off")) {
        switchOff(object, &rule); // its other members do not matter
        return rule;
    }
    const QString scope = object.optionalText("scope");
    rule.scope = scope == QLatin1String("vehicle") ? Rule::Scope::Vehicle : Rule::Scope::Node;
    if (!scope.isEmpty() && scope != QLatin1String("vehicle") && scope != QLatin1String("node"))
        JsonPlace(&object.place(), "scope").complain(oneOf("node, vehicle"));
    const QString take = object.optionalText("take");
    rule.take = take == QLatin1String("first") ? Rule::Take::First : Rule::Take::All;
    if (!take.isEmpty() && take != QLatin1String("first") && take != QLatin1String("all"))
        JsonPlace(&object.place(), "take").complain(oneOf("first, all"));
    readClasses(object, &rule);
    const Loops loops = readLoops(object, &rule);
    readNeeds(object, loops, &rule);
    rule.when = formulaOf(object, "when", loops);
    readCases(object, loops, &rule);
    if (rule.scope == Rule::Scope::Vehicle)
        checkVehicleRule(object, rule);
    return rule;
}

/*! A name that is mistyped would leave the rule on without a word. */
void RuleReading::switchOff(const JsonObject &object, Rule *rule) const
{
    rule->cases.append(RuleCase());
    if (!m_known.contains(rule->id))
        JsonPlace(&object.place(), "id")
            .complain(tr("There is no rule of this name before it, to be switched off."));
}

/*! The vehicle as a whole has no objects, so that a condition with one would never hold. */
void RuleReading::checkVehicleRule(const JsonObject &object, const Rule &rule)
{
    const QString problem = tr("A rule of the vehicle has no objects.");
    const JsonPlace loops(&object.place(), "for");
    for (int i = 0; i < rule.loops.size(); ++i) {
        if (rule.loops.at(i).kind != RuleLoop::Kind::Numbers)
            JsonPlace(&loops, i).complain(problem);
    }
    if (rule.when.hasObject())
        JsonPlace(&object.place(), "when").complain(problem);
    const JsonPlace cases(&object.place(), "cases");
    for (int i = 0; i < rule.cases.size(); ++i) {
        const JsonPlace place(&cases, i);
        if (rule.cases.at(i).when.hasObject())
            JsonPlace(&place, "when").complain(problem);
    }
}

void RuleReading::readClasses(const JsonObject &object, Rule *rule)
{
    if (!object.has("components"))
        return;
    for (const qint64 code : object.integers("components", 0, 0xFF))
        rule->classes.append(static_cast<quint8>(code));
}

RuleReading::Loops RuleReading::readLoops(const JsonObject &object, Rule *rule)
{
    Loops loops;
    const JsonPlace place(&object.place(), "for");
    QStringList texts;
    if (object.scalar("for").type() == QVariant::String)
        texts.append(object.text("for"));
    else if (object.has("for"))
        texts = object.texts("for");
    if (texts.size() > Evaluation::mostLoops)
        place.complain(tr("A rule has at most two loops."));
    for (int i = 0; i < texts.size() && !place.isFaulty(); ++i) {
        ExpressionParser::Loop loop;
        RuleLoop read;
        QString problem;
        if (!readLoop(texts.at(i), loops, &loop, &read, &problem))
            JsonPlace(&place, i).complain(problem);
        loops.append(loop);
        rule->loops.append(read);
    }
    return loops;
}

/*! "s in 6040h", "b in 0 to 15", "p in 6165h to 6174h" */
bool RuleReading::readLoop(const QString &text, const Loops &known, ExpressionParser::Loop *loop,
                           RuleLoop *read, QString *problem)
{
    static const QRegularExpression numbers(QStringLiteral("^([a-z]) in (\\d{1,5}) to (\\d{1,5})$"));
    static const QRegularExpression objects(
        QStringLiteral("^([a-z]) in ([0-9A-Fa-f]{4})h to ([0-9A-Fa-f]{4})h$"));
    static const QRegularExpression subIndices(QStringLiteral("^([a-z]) in (these|[0-9A-Fa-f]{4}h)$"));
    QRegularExpressionMatch match = numbers.match(text);
    const bool isNumbers = match.hasMatch();
    if (!isNumbers)
        match = objects.match(text);
    if (match.hasMatch()) {
        read->kind = isNumbers ? RuleLoop::Kind::Numbers : RuleLoop::Kind::Objects;
        read->first = match.captured(2).toInt(nullptr, isNumbers ? 10 : 16);
        read->last = match.captured(3).toInt(nullptr, isNumbers ? 10 : 16);
        loop->hasObject = !isNumbers;
        if (read->last < read->first || read->last - read->first >= mostNumbers)
            *problem = tr("A loop runs from a lower to a higher number, %1 at most.").arg(mostNumbers);
    } else {
        match = subIndices.match(text);
        read->kind = RuleLoop::Kind::SubIndices;
        if (match.hasMatch())
            read->object
                = ExpressionParser(known).parseObject(match.captured(2), problem).value_or(ObjectReference());
        else
            *problem = tr("A loop is written \"s in 6040h\", \"b in 0 to 15\" or \"p in 6165h to 6174h\".");
    }
    loop->name = match.captured(1);
    return problem->isEmpty();
}

void RuleReading::readNeeds(const JsonObject &object, const Loops &loops, Rule *rule)
{
    const QStringList texts = object.has("needs") ? object.texts("needs") : QStringList();
    const JsonPlace place(&object.place(), "needs");
    for (int i = 0; i < texts.size(); ++i) {
        QString problem;
        const std::optional<Expression> need = ExpressionParser(loops).parse(texts.at(i), &problem);
        if (need)
            rule->needs.append(*need);
        else
            JsonPlace(&place, i).complain(problem + QLatin1Char('.'));
    }
}

void RuleReading::readCases(const JsonObject &object, const Loops &loops, Rule *rule)
{
    RuleCase common;
    common.severity = Severity::Warning;
    const bool hasCases = object.has("cases");
    if (!hasCases && !object.has("severity"))
        object.place().complain(tr("A severity is missing."));
    const RuleCase own = caseOf(object, loops, common);
    if (!hasCases) {
        rule->cases.append(own);
        rule->cases.last().when = Expression(); // it is the rule's
    } else {
        object.forEachObject("cases", [rule, &loops, &own](const JsonObject &caseObject) {
            rule->cases.append(caseOf(caseObject, loops, own));
        });
    }
    if (rule->cases.isEmpty() || rule->cases.size() > mostCases)
        JsonPlace(&object.place(), "cases").complain(tr("1 to %1 cases are wanted.").arg(mostCases));
    for (const RuleCase &ruleCase : qAsConst(rule->cases)) {
        if (ruleCase.text.isEmpty())
            JsonPlace(&object.place(), "text")
                .complain(tr("The sentence that says what was found is missing."));
        if (rule->when.isEmpty() && ruleCase.when.isEmpty())
            JsonPlace(&object.place(), "when").complain(tr("The condition is missing."));
    }
}

RuleCase RuleReading::caseOf(const JsonObject &object, const Loops &loops, const RuleCase &common)
{
    RuleCase result = common;
    if (object.has("severity")) {
        const QString word = object.text("severity", longestName);
        bool isKnown = false;
        for (const SeverityWord &known : severityWords) {
            if (word == QLatin1String(known.word)) {
                result.severity = known.severity;
                isKnown = true;
            }
        }
        if (!isKnown)
            JsonPlace(&object.place(), "severity").complain(oneOf("fault, warning, note, off"));
    }
    result.when = formulaOf(object, "when", loops);
    if (object.has("text"))
        result.text = textOf(object, "text", loops);
    if (object.has("advice"))
        result.advice = textOf(object, "advice", loops);
    return result;
}

Expression RuleReading::formulaOf(const JsonObject &object, const char *key, const Loops &loops)
{
    const QString text = object.optionalText(key);
    if (text.isEmpty())
        return Expression();
    QString problem;
    const std::optional<Expression> formula = ExpressionParser(loops).parse(text, &problem);
    if (formula && formula->hasTextFact())
        problem = tr("A text is no number");
    if (!problem.isEmpty())
        JsonPlace(&object.place(), key).complain(problem + QLatin1Char('.'));
    return formula.value_or(Expression());
}

LocalText<TextTemplate> RuleReading::textOf(const JsonObject &object, const char *key, const Loops &loops)
{
    const JsonPlace place(&object.place(), key);
    const LocalText<QString> plain = plainTextOf(object, key);
    LocalText<TextTemplate> text;
    for (auto line = plain.all().cbegin(); line != plain.all().cend(); ++line) {
        QString problem;
        const std::optional<TextTemplate> parsed = TextTemplate::parse(line.value(), loops, &problem);
        if (parsed)
            text.set(line.key(), *parsed);
        else
            JsonPlace(&place, line.key().toUtf8().constData()).complain(problem + QLatin1Char('.'));
    }
    return text;
}

LocalText<QString> RuleReading::plainTextOf(const JsonObject &object, const char *key)
{
    LocalText<QString> text;
    object.forObject(key, [&text](const JsonObject &texts) {
        const QStringList languages = texts.keys();
        for (const QString &language : languages)
            text.set(language, texts.text(language.toUtf8().constData()));
        if (!languages.contains(QStringLiteral("en")))
            texts.place().complain(tr("The English text, \"en\", is missing."));
    });
    return text;
}
