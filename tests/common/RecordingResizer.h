#pragma once

#include <map>
#include <vector>

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

} // namespace testing_support
