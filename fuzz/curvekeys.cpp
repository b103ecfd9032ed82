// Edits of curves in any order, by the mouse and by calls: whatever is done, knots stay sorted, as far
// apart as they have to be, finite and within their count; what is written is read back.

#include <KxUI/curveedit/CurveDrag_p.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>

#include <support/Require.h>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

constexpr QRectF Plot(8, 8, 300, 200);

/** Bytes, which choose what is done. */
class Choices {
public:
    explicit Choices(std::string_view bytes)
        : m_bytes(bytes) {}

    bool isAtEnd() const { return m_bytes.empty(); }
    unsigned next() {
        if (m_bytes.empty())
            return 0;
        const auto byte = static_cast<unsigned char>(m_bytes.front());
        m_bytes.remove_prefix(1);
        return byte;
    }
    int below(int count) { return count > 0 ? int(next()) % count : 0; }
    /** Mostly between 0 and 1; now and then something odd. */
    double number() {
        const unsigned byte = next();
        switch (byte) {
        case 255:
            return HUGE_VAL;
        case 254:
            return std::nan("");
        case 253:
            return -1e140;
        case 252:
            return 1e300;
        case 251:
            return 1e-300;
        default:
            return double(byte) / 125 - 0.5;
        }
    }
    QByteArray text() {
        const std::size_t size = std::min<std::size_t>(m_bytes.size(), next() % 64);
        const std::string_view front = m_bytes.substr(0, std::min(size, m_bytes.size()));
        m_bytes.remove_prefix(front.size());
        return {front.data(), int(front.size())};
    }

private:
    std::string_view m_bytes;
};

/** A view without its widget. */
class Desk {
public:
    explicit Desk(std::string_view bytes)
        : m_choices(bytes) {
        const unsigned kind = m_choices.next();
        if (kind % 2 == 0)
            makeCurves(kind);
        else
            makeKeys(kind);
        QObject::connect(m_model.get(), &CurveModel::knotsChanged,
                         [this](int curve, int first, int last) {
                             const int count = m_model->knots(curve);
                             require(curve >= 0 && curve < m_model->count(), "a curve is told of");
                             require(first >= 0 && last < count && (first <= last || count == 0),
                                     "knots are told of");
                         });
        m_scene.model = m_model.get();
        m_scene.several = kind % 3 == 0;
        m_scene.pressAdds = kind % 5 != 0;
        m_scene.hasFrame = kind % 7 != 0;
        m_scene.snaps = kind % 4 < 2;
        m_scene.hasFrames = kind % 11 == 0;
        m_scene.snapX = {0.3, 0.7};
        m_scene.playhead = 0.5;
        m_scale = {AxisScale(kind / 16 % 3), AxisScale(kind / 64 % 3), 64};
        for (int curve = 0; curve < m_model->count(); ++curve) {
            if (curve == 0 || m_scene.several)
                m_scene.curves.push_back(curve);
        }
        show({0, 0, 1, 1});
    }

    void run() {
        while (!m_choices.isAtEnd()) {
            step();
            checkSanity();
        }
    }

private:
    void makeCurves(unsigned kind) {
        auto model = std::make_unique<CurvesModel>();
        model->setCurves(Curves(1 + int(kind / 2 % 4), 2 + kind / 8 % 7, 2 + kind / 16 % 3));
        m_model = std::move(model);
    }

    void makeKeys(unsigned kind) {
        auto model = std::make_unique<KeyCurveModel>();
        for (int curve = 0; curve < 1 + int(kind / 2 % 2); ++curve) {
            KeyCurve keys;
            require(keys.setText("(0, 0, linear), (0.25, 0.5, monotone), (0.5, 1, constant), "
                                 "(0.6, 0.2, free, out 2), (0.7, 0.1), (0.8, 0.9), (1, 1)"),
                    "the first keys can be read");
            keys.setBeyond(KeyCurve::Beyond(kind / 4 % 4), KeyCurve::Beyond::Hold);
            CurveModel::Limits limits = model->limits(model->addCurve(QString(), keys));
            if (kind / 8 % 2 == 1) {
                limits.gap = 0.01;
                limits.lowX = limits.lowY = 0;
                limits.highX = limits.highY = 1;
                limits.mostKnots = 10;
                limits.fewestKnots = 3;
            }
            if (kind / 32 % 4 == 3)
                limits.stepX = 0.05;
            model->setLimits(curve, limits);
            m_hasStep = limits.stepX > 0;
        }
        m_model = std::move(model);
    }

    void show(const QRectF& range) { m_scene.plot = CurvePlot(Plot, range, m_scale); }

    std::vector<int> someKnots(int curve) {
        std::vector<int> knots;
        const unsigned bits = m_choices.next();
        for (int knot = 0; knot < std::min(8, m_model->knots(curve)); ++knot) {
            if (bits >> knot & 1U)
                knots.push_back(knot);
        }
        return knots;
    }

    CurveInput input() {
        const unsigned byte = m_choices.next();
        m_input.mouse = m_scene.plot.toWidget({m_choices.number(), m_choices.number()});
        // No further than a screen might be, which is still far beyond any knot.
        const auto onScreen = [&](double pixel) {
            return std::isfinite(pixel) ? std::clamp(pixel, -1e5, 1e5) : double(byte);
        };
        m_input.mouse = {onScreen(m_input.mouse.x()), onScreen(m_input.mouse.y())};
        m_input.modifiers = Qt::KeyboardModifiers();
        if (byte % 8 == 1)
            m_input.modifiers = Qt::ShiftModifier;
        else if (byte % 8 == 2)
            m_input.modifiers = Qt::ControlModifier;
        else if (byte % 8 == 3)
            m_input.modifiers = Qt::AltModifier;
        m_input.time += byte;
        return m_input;
    }

    // On a knot, since hits at random are few.
    CurveInput inputOnKnot() {
        input();
        const int curve = m_scene.current;
        if (m_model->knots(curve) > 0) {
            QPointF place;
            m_model->places(curve, m_choices.below(m_model->knots(curve)), 1, &place);
            m_input.mouse = CurvePick::shownAt(m_scene, curve, place);
        }
        return m_input;
    }

    void press(const CurveInput& at) {
        const Qt::MouseButton button = m_choices.below(8) == 0 ? Qt::MiddleButton : Qt::LeftButton;
        m_input.held |= button;
        CurveInput pressed = at;
        pressed.held = m_input.held;
        execute(m_drag.press(m_scene, pressed, button));
    }

    void step() {
        const int curve = m_choices.below(m_model->count());
        switch (m_choices.below(20)) {
        case 0:
        case 1:
            return press(inputOnKnot());
        case 2:
            return press(input());
        case 3:
            m_input.held = Qt::NoButton;
            return execute(m_drag.release(m_scene, m_drag.button()));
        case 4:
            return execute(m_drag.takeBack(m_scene));
        case 5:
            execute(m_drag.scroll(m_scene));
            return execute(m_drag.move(m_scene, m_input));
        case 6:
            return call(curve);
        case 7:
            return view();
        default:
            return execute(m_drag.move(m_scene, input()));
        }
    }

    // What a host or a key does.
    void call(int curve) {
        CurveModel& model = *m_model;
        const int knot = m_choices.below(model.knots(curve));
        switch (m_choices.below(9)) {
        case 0:
            model.add(curve, m_choices.number(), m_choices.number());
            break;
        case 1:
            model.addOnLine(curve, m_choices.number());
            break;
        case 2:
            model.remove(curve, someKnots(curve));
            break;
        case 3:
            model.setShape(curve, someKnots(curve), m_choices.below(7));
            break;
        case 4:
            model.setSlopes(curve, knot, m_choices.number(), m_choices.number(),
                            m_choices.below(2) == 0);
            break;
        case 5:
            model.select(curve, knot, m_choices.below(9),
                         CurveModel::SelectionMode(m_choices.below(4)));
            break;
        case 6:
            m_isLoaded = model.load(curve, m_choices.text()) || m_isLoaded;
            break;
        case 7:
            model.move({{curve, knot, m_choices.number(), m_choices.number()},
                        {0, m_choices.below(9), m_choices.number(), m_choices.number()}});
            break;
        default:
            checkText(curve);
            break;
        }
        execute(m_drag.modelChanged(m_scene));
    }

    void view() {
        const QPointF at = input().mouse;
        const QRectF range =
            m_choices.below(2) == 0
                ? m_scene.plot.zoomed(at, std::exp2(m_choices.below(9) - 4),
                                      std::exp2(m_choices.below(9) - 4), m_scene.nominal)
                : m_scene.plot.panned(at - Plot.center(), m_scene.nominal);
        show(range);
    }

    void execute(const CurveCommands& commands) {
        for (const CurveCommand& each : commands)
            execute(each);
    }

    void execute(const CurveCommand& command) {
        CurveModel& model = *m_model;
        switch (command.kind) {
        case CurveCommand::SetCurrent:
            m_scene.current = command.curve;
            return;
        case CurveCommand::Select:
            return model.select(command.curve, command.first, command.last, command.mode);
        case CurveCommand::ShowRange:
            return show(command.range);
        case CurveCommand::End:
            return;
        case CurveCommand::Move:
            require(model.move(command.moves) || m_isLoaded || m_hasStep,
                    "a drag asks for what can be");
            return;
        case CurveCommand::Add:
            return execute(m_drag.added(
                m_scene, model.add(command.curve, command.place.x(), command.place.y())));
        case CurveCommand::AddOnLine:
            return execute(
                m_drag.added(m_scene, model.addOnLine(command.curve, command.place.x())));
        case CurveCommand::Remove:
            require(model.remove(command.curve, {command.first}), "what is pulled out goes");
            return;
        case CurveCommand::Restore:
            require(model.load(command.curve, command.bytes), "what was pulled out comes back");
            return;
        case CurveCommand::SetSlopes:
            model.setSlopes(command.curve, command.first, command.place.x(), command.place.y(),
                            command.broken);
            return;
        }
    }

    void checkSanity() {
        for (int curve = 0; curve < m_model->count(); ++curve)
            checkCurve(curve);
        require(m_scene.plot.range().width() > 0, "something shows");
        const CurveHit hit = CurvePick::at(m_scene, m_input.mouse);
        require(hit.knot < m_model->knots(std::max(hit.curve, 0)), "a knot is hit that is there");
    }

    void checkCurve(int curve) {
        const CurveModel::Limits limits = m_model->limits(curve);
        const int count = m_model->knots(curve);
        require(m_isLoaded || (count <= limits.mostKnots && count >= limits.fewestKnots),
                "as many knots as may be");
        double before = -HUGE_VAL;
        for (int i = 0; i < count; ++i) {
            const CurveModel::Knot knot = m_model->knot(curve, i);
            require(std::isfinite(knot.x) && std::isfinite(knot.y), "knots are finite");
            require(std::isfinite(knot.slopeIn) && std::isfinite(knot.slopeOut),
                    "slopes are finite");
            require(knot.x > before || (m_isLoaded && knot.x == before), "knots are sorted");
            require(m_isLoaded || knot.x - before >= limits.gap * 0.999, "knots are apart");
            require(m_isLoaded || (knot.x >= limits.lowX && knot.x <= limits.highX &&
                                   knot.y >= limits.lowY && knot.y <= limits.highY),
                    "knots are within their limits");
            require(m_model->firstKnotFrom(curve, knot.x) <= i, "knots are found");
            before = knot.x;
        }
        const std::vector<int> selected = m_model->selectedKnots(curve);
        require(selected.empty() || selected.back() < count, "knots are selected that are there");
        double samples[9];
        m_model->sample(curve, -0.5, 1.5, 9, samples);
        for (const double sample : samples)
            require(std::isfinite(sample), "the line is finite");
    }

    void checkText(int curve) {
        const QByteArray text = m_model->save(curve);
        require(m_model->load(curve, text) && m_model->save(curve) == text,
                "a curve comes back from its text");
    }

    Choices m_choices;
    std::unique_ptr<CurveModel> m_model;
    CurveScene m_scene;
    CurvePlot::Scales m_scale;
    CurveDrag m_drag;
    CurveInput m_input;
    bool m_isLoaded = false; ///< from bytes that limits do not count for
    bool m_hasStep = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Desk(textOf(data, size)).run();
    return 0;
}
