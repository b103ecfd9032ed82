#pragma once

#include <KxUI/values/NumberExpression_p.h>
#include <KxUI/values/NumberFunctions_p.h>

#include <muParser.h>

#include <cmath>
#include <string>

namespace Kestrel::Fuzz {

/** Another reader of the same expressions: muParser, with the functions of this one. */
class NumberOracle {
public:
    enum Verdict { SameNumber, BothFail, NoComparison, Differ };

    explicit NumberOracle(double x)
        : m_x(x) {
        m_parser.ClearConst();
        m_parser.DefineConst("pi", UI::Pi);
        m_parser.DefineConst("e", std::exp(1.0));
        m_parser.DefineVar("x", &m_x);
        for (const char* gone : {"rint", "sign", "sum", "avg", "sinh", "cosh", "tanh", "asinh",
                                 "acosh", "atanh", "log", "atan2"})
            undefine(gone);
        define<0>("abs"), define<1>("floor"), define<2>("sqrt"), define<3>("sin");
        define<4>("cos"), define<5>("log2"), define<6>("ln"), define<7>("stops");
        define<8>("ceil"), define<9>("round"), define<10>("exp"), define<11>("log10");
        define<12>("tan"), define<13>("asin"), define<14>("acos"), define<15>("atan");
        m_parser.EnableOptimizer(false);
    }

    /** Where it fails, `text` has what only one of the two knows, such as logical operators. */
    Verdict compare(const std::string& text) {
        UI::ExpressionContext context;
        context.x = m_x;
        context.group = u'\0';
        const auto ours = UI::evaluate(std::u16string(text.begin(), text.end()), context);
        const bool read = ours.problem == UI::NumberProblem::None;
        double theirs = 0.0;
        try {
            m_parser.SetExpr(text);
            theirs = m_parser.Eval();
            if (m_parser.GetNumResults() > 1) // a list, which is no number
                return read ? Differ : BothFail;
        } catch (const mu::Parser::exception_type&) {
            return read ? Differ : BothFail;
        }
        if (ours.problem == UI::NumberProblem::TooDeep ||
            ours.problem == UI::NumberProblem::TooLong)
            return NoComparison;
        if (!read) {
            // An infinite number in between may end as a finite one there.
            return ours.problem == UI::NumberProblem::NoResult
                       ? std::isfinite(theirs) ? NoComparison : BothFail
                       : Differ;
        }
        return isNear(ours.value.number, theirs) ? SameNumber : Differ;
    }

private:
    double m_x;
    mu::Parser m_parser;
    static inline const UI::NumberFunction* s_functions[16] = {};

    static bool isNear(double a, double b) {
        return std::fabs(a - b) <= 4.0 * 2.3e-16 * std::fabs(b) || a == b;
    }
    void undefine(const char* name) {
        m_parser.DefineFun(
            name, [](double) -> double { throw mu::ParserError("unknown"); }, false);
    }
    template <int Index>
    void define(const char* name) {
        s_functions[Index] = UI::numberFunction(name);
        m_parser.DefineFun(
            name, [](double a) { return s_functions[Index]->one(a); }, false);
    }
};

} // namespace Kestrel::Fuzz
