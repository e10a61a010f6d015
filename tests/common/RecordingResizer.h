#pragma once

#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/Schema.h"

namespace testing_support {

// Answers from a table (-1 for key spaces it does not know) and records every question in
// the order asked.
class RecordingResizer : public veksg::SchemaResizer {
public:
    RecordingResizer() = default;
    explicit RecordingResizer(std::map<short, int> answers) : answers(std::move(answers)) {}

    int lastKeyOf(const short& keySpace) override {
        asked.push_back(keySpace);
        const auto found = answers.find(keySpace);
        return found == answers.end() ? -1 : found->second;
    }

    std::map<short, int> answers;
    std::vector<short> asked;
};

// Resizes `component` with a recorder of `answers` and returns the questions it was asked;
// the component must have let the resizer go by then.
template <typename Component>
std::vector<short> resizeAsking(Component& component, std::map<short, int> answers = {}) {
    auto resizer = std::make_shared<RecordingResizer>(std::move(answers));
    component.resize(resizer);
    EXPECT_EQ(resizer.use_count(), 1);
    return resizer->asked;
}

} // namespace testing_support
