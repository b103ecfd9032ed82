#include <KxUI/curveedit/CurveDrag_p.h>

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace Kestrel::UI {
namespace {

constexpr double MostScroll = 24; // pixels at once

CurveCommand selection(int curve, int first, int last, CurveModel::SelectionMode mode) {
    CurveCommand command{CurveCommand::Select};
    command.curve = curve;
    command.first = first;
    command.last = last;
    command.mode = mode;
    return command;
}

CurveCommand makeCurrent(int curve) {
    CurveCommand command{CurveCommand::SetCurrent};
    command.curve = curve;
    return command;
}

// One knot of all that can be edited, or none.
CurveCommands selectionOf(const CurveScene& scene, int curve, int knot) {
    CurveCommands commands;
    for (const int each : scene.curves) {
        const bool isOwn = each == curve;
        commands.push_back(
            selection(each, isOwn ? knot : 0, isOwn ? knot : -1, CurveModel::SelectOnly));
    }
    return commands;
}

void append(CurveCommands& commands, const CurveCommands& more) {
    commands.insert(commands.end(), more.begin(), more.end());
}

} // namespace

CurveDrag::What CurveDrag::what() const {
    if (m_adds)
        return AddsKnot;
    if (std::holds_alternative<CurveHandleDrag>(m_state))
        return ChangesSlope;
    return std::holds_alternative<CurveFrameDrag>(m_state) ? ScalesKnots : MovesKnots;
}

int CurveDrag::count() const {
    if (const auto* const knots = std::get_if<CurveKnotsDrag>(&m_state))
        return std::max(1, knots->count());
    const auto* const frame = std::get_if<CurveFrameDrag>(&m_state);
    return frame ? frame->count() : 1;
}

CurveCommands CurveDrag::press(const CurveScene& scene, const CurveInput& input,
                               Qt::MouseButton button) {
    if (isHeld() && button != m_button)
        return button == Qt::RightButton ? takeBack(scene) : CurveCommands();
    CurveCommands commands = finish(); // of the same button, whose release was lost
    if (button == Qt::LeftButton) {
        append(commands, pressLeft(scene, input));
        m_press = input;
    } else if (button == Qt::MiddleButton && scene.canZoom) {
        if (input.has(Qt::ControlModifier))
            m_state.emplace<CurveZoomDrag>(scene, input);
        else
            m_state.emplace<CurvePanDrag>(scene, input);
    } else {
        return commands;
    }
    m_button = button;
    return commands;
}

// The knot that was taken by a press here just before.
const CurveHit* CurveDrag::repicked(const CurveInput& input) const {
    const QPointF way = input.mouse - m_press.mouse;
    const bool isSamePlace = std::hypot(way.x(), way.y()) <= CurveDragDistance;
    const bool isSoon = input.time >= m_press.time && input.time - m_press.time <= RepickTime;
    return m_hit.part == CurveHit::Knot && isSamePlace && isSoon ? &m_hit : nullptr;
}

CurveCommands CurveDrag::pressLeft(const CurveScene& scene, const CurveInput& input) {
    const CurveHit previous = m_hit;
    const CurveHit* const again = repicked(input) ? &previous : nullptr;
    m_adds = false;
    m_hit = {};
    if (!scene.model)
        return {};
    const int grip = CurveFrame::of(scene).gripAt(input.mouse);
    if (grip >= 0) {
        m_state.emplace<CurveFrameDrag>(scene, grip, input);
        return {};
    }
    const CurveHit hit = CurvePick::at(scene, input.mouse, again);
    if (hit.part == CurveHit::Knot)
        return pressKnot(scene, input, hit);
    if (hit.isHandle()) {
        m_hit = hit;
        m_state.emplace<CurveHandleDrag>(hit, input);
        return {};
    }
    return pressBeside(scene, input, hit);
}

CurveCommands CurveDrag::pressKnot(const CurveScene& scene, const CurveInput& input,
                                   const CurveHit& hit) {
    m_hit = hit;
    CurveCommands commands;
    if (hit.curve != scene.current)
        commands.push_back(makeCurrent(hit.curve));
    const bool wasSelected = scene.model->knot(hit.curve, hit.knot).selected;
    const bool adds = input.has(Qt::ShiftModifier);
    const bool toggles = !adds && input.has(Qt::ControlModifier);
    const bool isPlain = !adds && !toggles;
    if (toggles)
        commands.push_back(selection(hit.curve, hit.knot, hit.knot, CurveModel::SelectToggle));
    else if (adds && !wasSelected)
        commands.push_back(selection(hit.curve, hit.knot, hit.knot, CurveModel::SelectAdd));
    else if (!wasSelected)
        append(commands, selectionOf(scene, hit.curve, hit.knot));
    if (!toggles || !wasSelected)
        m_state.emplace<CurveKnotsDrag>(scene, hit, input, isPlain && wasSelected, !isPlain);
    return commands;
}

CurveCommands CurveDrag::pressBeside(const CurveScene& scene, const CurveInput& input,
                                     const CurveHit& hit) {
    const bool isPlain = !(input.modifiers & (Qt::ShiftModifier | Qt::ControlModifier));
    const bool isInside = scene.plot.rect().contains(input.mouse);
    CurveCommand add;
    if (isPlain && hit.part == CurveHit::Line && scene.can(hit.curve, CurveModel::CanAdd)) {
        add.kind = CurveCommand::AddOnLine;
        add.curve = hit.curve;
        add.place = {hit.x, 0};
    } else if (isPlain && isInside && !scene.several && scene.pressAdds &&
               scene.can(scene.current, CurveModel::CanAdd)) {
        add.kind = CurveCommand::Add;
        add.curve = scene.current;
        add.place = scene.plot.toCurve(input.mouse);
    } else if (!isPlain || scene.several || !scene.pressAdds) {
        return startBox(scene, input);
    } else {
        return selectionOf(scene, -1, -1);
    }
    m_adds = true;
    m_hit.curve = add.curve;
    CurveCommands commands;
    if (add.curve != scene.current)
        commands.push_back(makeCurrent(add.curve));
    commands.push_back(add);
    return commands;
}

CurveCommands CurveDrag::startBox(const CurveScene& scene, const CurveInput& input) {
    m_state.emplace<CurveBoxDrag>(scene, input);
    const bool isPlain = !(input.modifiers & (Qt::ShiftModifier | Qt::ControlModifier));
    return isPlain ? selectionOf(scene, -1, -1) : CurveCommands();
}

CurveCommands CurveDrag::added(const CurveScene& scene, int knot) {
    const int curve = m_hit.curve;
    if (m_button != Qt::LeftButton || !m_adds || isActive() || !scene.holds(curve, knot))
        return {};
    QPointF place;
    scene.model->places(curve, knot, 1, &place);
    m_hit.part = CurveHit::Knot;
    m_hit.curve = curve;
    m_hit.knot = knot;
    m_hit.place = CurvePick::shownAt(scene, curve, place);
    m_state.emplace<CurveKnotsDrag>(scene, m_hit, m_press, false, false);
    return selectionOf(scene, curve, knot);
}

CurveCommands CurveDrag::move(const CurveScene& scene, const CurveInput& input) {
    if (isHeld() && !(input.held & m_button)) {
        m_button = Qt::NoButton;
        return finish();
    }
    if (!isActive())
        return {};
    if (!scene.model && edits())
        return finish();
    CurveCommands commands = moveState(scene, input);
    if (!commands.empty() && commands.back().kind == CurveCommand::End)
        m_state = std::monostate();
    return commands;
}

CurveCommands CurveDrag::moveState(const CurveScene& scene, const CurveInput& input) {
    return std::visit(
        [&](auto& state) -> CurveCommands {
            using State = std::decay_t<decltype(state)>;
            if constexpr (std::is_same_v<State, std::monostate>)
                return {};
            else
                return state.move(scene, input);
        },
        m_state);
}

CurveCommands CurveDrag::release(const CurveScene& scene, Qt::MouseButton button) {
    if (button != m_button)
        return {};
    m_button = Qt::NoButton;
    CurveCommands commands;
    if (const auto* const knots = std::get_if<CurveKnotsDrag>(&m_state))
        commands = knots->release(scene);
    append(commands, finish());
    return commands;
}

CurveCommands CurveDrag::finish() {
    if (!isActive())
        return {};
    m_state = std::monostate();
    return {CurveCommand()};
}

CurveCommands CurveDrag::takeBack(const CurveScene& scene) {
    CurveCommands commands;
    if (const auto* const box = std::get_if<CurveBoxDrag>(&m_state))
        commands = box->takeBack(scene);
    else if (const auto* const pan = std::get_if<CurvePanDrag>(&m_state))
        commands = pan->takeBack();
    else if (const auto* const zoom = std::get_if<CurveZoomDrag>(&m_state))
        commands = zoom->takeBack();
    append(commands, finish());
    return commands;
}

CurveCommands CurveDrag::modelChanged(const CurveScene& scene) {
    CurveCommands commands;
    if (!scene.model && edits())
        return finish();
    if (auto* const knots = std::get_if<CurveKnotsDrag>(&m_state))
        commands = knots->modelChanged(scene);
    else if (auto* const frame = std::get_if<CurveFrameDrag>(&m_state))
        commands = frame->modelChanged(scene);
    if (!commands.empty())
        m_state = std::monostate();
    return commands;
}

CurveHit CurveDrag::resetBy(const CurveScene& scene, const CurveInput& input) const {
    if (!scene.model || CurveFrame::of(scene).gripAt(input.mouse) >= 0)
        return {};
    const CurveHit hit = CurvePick::at(scene, input.mouse);
    const bool isKnot = hit.part == CurveHit::Knot && !m_adds && hit.rivals == 0;
    return isKnot || hit.isHandle() ? hit : CurveHit();
}

QRectF CurveDrag::box(const CurvePlot& plot) const {
    const auto* const box = std::get_if<CurveBoxDrag>(&m_state);
    return box ? box->rect(plot) : QRectF();
}

bool CurveDrag::scrolls(const CurveScene& scene) const {
    const auto* const box = std::get_if<CurveBoxDrag>(&m_state);
    return box && scene.canZoom && !scene.plot.rect().contains(box->mouse());
}

CurveCommands CurveDrag::scroll(const CurveScene& scene) const {
    if (!scrolls(scene))
        return {};
    const QPointF mouse = std::get<CurveBoxDrag>(m_state).mouse();
    const QRectF& rect = scene.plot.rect();
    const auto speed = [](double beyond) {
        return std::clamp(beyond / 2, -MostScroll, MostScroll);
    };
    const QPointF beyond(mouse.x() - std::clamp(mouse.x(), rect.left(), rect.right()),
                         mouse.y() - std::clamp(mouse.y(), rect.top(), rect.bottom()));
    CurveCommand command{CurveCommand::ShowRange};
    command.range = scene.plot.panned({-speed(beyond.x()), -speed(beyond.y())}, scene.nominal);
    return {command};
}

std::optional<CurveSnapTarget> CurveDrag::snapX() const {
    const auto* const knots = std::get_if<CurveKnotsDrag>(&m_state);
    return knots ? knots->snapped().x : std::nullopt;
}

std::optional<CurveSnapTarget> CurveDrag::snapY() const {
    const auto* const knots = std::get_if<CurveKnotsDrag>(&m_state);
    return knots ? knots->snapped().y : std::nullopt;
}

std::optional<QPointF> CurveDrag::pulledOut() const {
    const auto* const knots = std::get_if<CurveKnotsDrag>(&m_state);
    return knots ? knots->pulledOut() : std::nullopt;
}

QPointF CurveDrag::scale() const {
    const auto* const frame = std::get_if<CurveFrameDrag>(&m_state);
    return frame ? frame->scale() : QPointF(1, 1);
}

} // namespace Kestrel::UI
