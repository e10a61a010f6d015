#include "DrawingCheck.h"

#include <cmath>
#include <string>
#include <vector>

#include "Drawing.h"

namespace vekhost {

namespace {
using namespace drawing;

// As many problems as the host's check lists; the rest are only counted.
constexpr std::size_t shownProblems = 20;

class DrawingChecker {
public:
    DrawingChecker(const vek2d::SCScene2D& drawing, CheckResult& into) : d(drawing), result(into) {}

    void run() {
        entities();
        texts();
        layers();
        sheetsAndViews();
        numbers();
    }

private:
    void problem(const std::string& text) {
        if (result.problems.size() < shownProblems) result.problems.push_back(text);
        ++result.problemCount;
    }

    static std::string at(const char* table, std::size_t key) {
        return std::string("SCScene2D.") + table + "[" + std::to_string(key) + "]";
    }

    template <typename Size>
    void key(const char* table, std::size_t owner, const char* field, long long value, Size size) {
        ++result.references;
        if (value >= 0 && value < static_cast<long long>(size)) return;
        problem(at(table, owner) + "." + field + " names key " + std::to_string(value) +
                " of a table of " + std::to_string(size));
    }

    void entities() {
        const std::size_t counts[kindCount] = {0, d.ellipses.size(), d.hatches.size(),
                                               static_cast<std::size_t>(d.texts.size())};
        std::vector<int> uses[kindCount];
        for (int k = 1; k < kindCount; ++k)
            uses[k].assign(counts[k], 0);
        for (std::size_t e = 0; e < d.entities.size(); ++e) {
            const vek2d::Entity& entity = d.entities[e];
            ++result.references;
            if (entity.id != static_cast<int>(e))
                problem(at("entities", e) + " has id " + std::to_string(entity.id));
            key("entities", e, "value0 (view)", entity.value0, d.views.size());
            key("entities", e, "value1 (colour)", entity.value1, d.colors.size());
            const auto kind = static_cast<int>(kindOf(entity.style));
            ++result.references;
            if (kind >= kindCount || static_cast<int>(patternOf(entity.style)) >= patternCount) {
                problem(at("entities", e) + " has style " + std::to_string(entity.style) +
                        ", which names no kind or pattern");
                continue;
            }
            if (kind == static_cast<int>(Kind::Polyline)) {
                ++result.references;
                if (entity.value2 != -1 || entity.points.empty())
                    problem(at("entities", e) + " is a polyline with record " +
                            std::to_string(entity.value2) + " and " +
                            std::to_string(entity.points.size()) + " points");
                continue;
            }
            key("entities", e, "value2 (record)", entity.value2, counts[kind]);
            if (entity.value2 >= 0 && static_cast<std::size_t>(entity.value2) < counts[kind])
                ++uses[kind][static_cast<std::size_t>(entity.value2)];
        }
        // Each ellipse, hatch and text is drawn by one entity.
        static const char* const tables[kindCount] = {"", "ellipses", "hatches", "texts"};
        for (int k = 1; k < kindCount; ++k)
            for (std::size_t r = 0; r < uses[k].size(); ++r) {
                ++result.references;
                if (uses[k][r] != 1)
                    problem(at(tables[k], r) + " is drawn by " + std::to_string(uses[k][r]) +
                            " entities");
            }
    }

    void texts() {
        for (int t = 0; t < d.texts.size(); ++t) {
            const veksg::Text& text = d.texts.getValue(t);
            const auto key_ = static_cast<std::size_t>(t);
            key("texts", key_, "font", text.font, d.fonts.size());
            key("texts", key_, "color", text.color, d.colors.size());
        }
    }

    void layers() {
        const auto& onLayer = layerEntities(d);
        ++result.references;
        if (d.names.size() != d.values.size() ||
            static_cast<std::size_t>(onLayer.size()) != d.names.size())
            problem("SCScene2D has " + std::to_string(d.names.size()) + " layer names, " +
                    std::to_string(d.values.size()) + " layer states and " +
                    std::to_string(onLayer.size()) + " layer lists");
        std::vector<int> layerOf(d.entities.size(), 0);
        for (int layer = 0; layer < onLayer.size(); ++layer)
            for (const int e : onLayer.getValue(layer)) {
                key("lists0", static_cast<std::size_t>(layer), "entity", e, d.entities.size());
                if (e >= 0 && static_cast<std::size_t>(e) < layerOf.size())
                    ++layerOf[static_cast<std::size_t>(e)];
            }
        for (std::size_t e = 0; e < layerOf.size(); ++e) {
            ++result.references;
            if (layerOf[e] != 1)
                problem(at("entities", e) + " is on " + std::to_string(layerOf[e]) + " layers");
        }
    }

    void sheetsAndViews() {
        const auto& views = sheetViews(d);
        const auto& sheetOf = viewSheet(d);
        ++result.references;
        if (static_cast<std::size_t>(views.size()) != d.sheets.size() ||
            static_cast<std::size_t>(sheetOf.size()) != d.views.size())
            problem("SCScene2D has " + std::to_string(views.size()) + " view lists for " +
                    std::to_string(d.sheets.size()) + " sheets and " +
                    std::to_string(sheetOf.size()) + " view sheets for " +
                    std::to_string(d.views.size()) + " views");
        for (int v = 0; v < sheetOf.size(); ++v) {
            const int sheet = sheetOf.getValue(v);
            key("map0", static_cast<std::size_t>(v), "sheet", sheet, d.sheets.size());
            bool listed = false;
            if (sheet >= 0 && sheet < views.size())
                for (const int listedView : views.getValue(sheet))
                    listed = listed || listedView == v;
            ++result.references;
            if (!listed)
                problem("SCScene2D.map0[" + std::to_string(v) + "] is sheet " +
                        std::to_string(sheet) + ", whose lists1 entry does not list it");
        }
        for (int s = 0; s < views.size(); ++s)
            for (const int v : views.getValue(s)) {
                key("lists1", static_cast<std::size_t>(s), "view", v, d.views.size());
                ++result.references;
                if (v >= 0 && v < sheetOf.size() && sheetOf.getValue(v) != s)
                    problem("SCScene2D.lists1[" + std::to_string(s) + "] lists view " +
                            std::to_string(v) + ", which is on sheet " +
                            std::to_string(sheetOf.getValue(v)));
            }
        ++result.references;
        if (!d.sheets.empty() && d.current >= d.sheets.size())
            problem("SCScene2D.current is " + std::to_string(d.current) + " of " +
                    std::to_string(d.sheets.size()) + " sheets");
    }

    void finite(const char* table, std::size_t key_, const float* values, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            if (!std::isfinite(values[i])) {
                problem(at(table, key_) + " holds a value that is not finite");
                return;
            }
    }

    void numbers() {
        for (std::size_t e = 0; e < d.entities.size(); ++e) {
            const vek2d::Entity& entity = d.entities[e];
            for (const auto& p : entity.points)
                finite("entities", e, p.data(), 3);
            for (const auto& p : entity.points2)
                finite("entities", e, p.data(), 3);
            finite("entities", e, entity.matrix.data(), 16);
        }
        for (std::size_t i = 0; i < d.ellipses.size(); ++i) {
            const vek2d::Ellipse& e = d.ellipses[i];
            for (const auto* p : {&e.center, &e.axis0, &e.axis1})
                finite("ellipses", i, p->data(), 3);
            ++result.references;
            if (e.param1 <= e.param0 || e.param1 - e.param0 > turn)
                problem(at("ellipses", i) + " runs from " + std::to_string(e.param0) + " to " +
                        std::to_string(e.param1));
        }
        for (std::size_t h = 0; h < d.hatches.size(); ++h)
            for (const auto& loop : d.hatches[h].loops)
                for (const auto& p : loop)
                    finite("hatches", h, p.data(), 3);
        for (int t = 0; t < d.texts.size(); ++t)
            finite("texts", static_cast<std::size_t>(t), d.texts.getValue(t).matrix.data(), 16);
    }

    const vek2d::SCScene2D& d;
    CheckResult& result;
};
} // namespace

void checkDrawing(const vek2d::SCScene2D& drawing, CheckResult& result) {
    DrawingChecker(drawing, result).run();
}

} // namespace vekhost
