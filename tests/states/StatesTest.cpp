#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::Point3;

std::shared_ptr<veksg::TriadInfo> someTriad() {
    return std::make_shared<veksg::TriadInfo>(
        Point3(1, 2, 3), 'k', static_cast<unsigned char>(200),
        std::vector<std::vector<Point3>>{{Point3(0, 0, 1)}, {}},
        std::vector<std::vector<vekmath::Tuple<float, 16>>>{
            {vekmath::MatrixUtils::createIdentity()}},
        std::vector<Point3>{Point3(4, 5, 6), Point3(7, 8, 9)});
}

// One of each class, made with command id 7.
std::vector<std::shared_ptr<veksg::IState>> oneOfEach() {
    const Point3 p(1, 0, 0);
    return {
        std::make_shared<veksg::IState>(7),
        std::make_shared<veksg::CameraState>(7, p, p, p),
        std::make_shared<veksg::AppearanceState>(
            7, std::vector<int>{1}, std::vector<unsigned long>{}, std::vector<float>{}),
        std::make_shared<veksg::TransformState>(7, std::vector<int>{},
                                                std::vector<veksg::Transform>{}, 0, nullptr),
        std::make_shared<veksg::VisibilityState>(7, std::vector<int>{}, std::vector<int>{}),
        std::make_shared<veksg::SectionState>(7, std::vector<std::shared_ptr<veksg::Section>>{},
                                              std::vector<int>{}, 0, std::vector<bool>{}, nullptr),
        std::make_shared<veksg::ClipNodeState>(7, std::vector<bool>{true}),
    };
}

TEST(States, IdentifiersStartAsGivenAndUnsequenced) {
    for (const auto& state : oneOfEach()) {
        EXPECT_EQ(state->getCmdId(), 7);
        EXPECT_EQ(state->getSeqId(), -1);
        state->setCmdId(40);
        state->setSeqId(3);
        EXPECT_EQ(state->getCmdId(), 40);
        EXPECT_EQ(state->cmdId, 40);
        EXPECT_EQ(state->seqId, 3);
    }
}

TEST(States, ConstructorsPutEachArgumentInItsField) {
    const veksg::CameraState camera(1, Point3(1, 2, 3), Point3(4, 5, 6), Point3(0, 1, 0));
    EXPECT_EQ(camera.position, Point3(1, 2, 3));
    EXPECT_EQ(camera.target, Point3(4, 5, 6));
    EXPECT_EQ(camera.up, Point3(0, 1, 0));

    const veksg::AppearanceState look(1, {3, 4}, {0xff0000ffUL}, {0.5f, 0.25f, 1.0f});
    EXPECT_EQ(look.ids, (std::vector<int>{3, 4}));
    EXPECT_EQ(look.colors, (std::vector<unsigned long>{0xff0000ffUL}));
    EXPECT_EQ(look.transparencies, (std::vector<float>{0.5f, 0.25f, 1.0f}));

    const veksg::VisibilityState visibility(1, {1, 2}, {7});
    EXPECT_EQ(visibility.ids, (std::vector<int>{1, 2}));
    EXPECT_EQ(visibility.values, (std::vector<int>{7}));

    veksg::Transform moved;
    moved.valid = true;
    moved.matrix[12] = 5.0f;
    const auto triad = someTriad();
    const veksg::TransformState transform(1, {8}, {moved}, 3, triad);
    EXPECT_EQ(transform.ids, (std::vector<int>{8}));
    ASSERT_EQ(transform.transforms.size(), 1u);
    EXPECT_EQ(transform.transforms[0].matrix, moved.matrix);
    EXPECT_TRUE(transform.transforms[0].valid);
    EXPECT_EQ(transform.mode, 3);
    EXPECT_EQ(transform.triad, triad);

    const auto plane = std::make_shared<veksg::Section>();
    const veksg::SectionState section(1, {plane}, {10, 11}, 6, {true, false}, triad);
    EXPECT_EQ(section.sections.front(), plane);
    EXPECT_EQ(section.ids, (std::vector<int>{10, 11}));
    EXPECT_EQ(section.mode, 6);
    EXPECT_EQ(section.flags, (std::vector<bool>{true, false}));
    EXPECT_EQ(section.triad, triad);
    EXPECT_EQ(triad.use_count(), 3);

    const veksg::ClipNodeState clip(1, {false, true});
    EXPECT_EQ(clip.flags, (std::vector<bool>{false, true}));
    EXPECT_FALSE(clip.flag);
}

TEST(States, TriadTakesThePointFirst) {
    const auto triad = someTriad();
    EXPECT_EQ(triad->kind, 'k');
    EXPECT_EQ(triad->origin, Point3(1, 2, 3));
    EXPECT_EQ(triad->options, 200);
    ASSERT_EQ(triad->pointLists.size(), 2u);
    EXPECT_EQ(triad->pointLists[0], (std::vector<Point3>{Point3(0, 0, 1)}));
    EXPECT_TRUE(triad->pointLists[1].empty());
    ASSERT_EQ(triad->matrixLists.size(), 1u);
    EXPECT_EQ(triad->matrixLists[0][0], vekmath::MatrixUtils::createIdentity());
    EXPECT_EQ(triad->points, (std::vector<Point3>{Point3(4, 5, 6), Point3(7, 8, 9)}));
}

TEST(States, CopiesCarryIdentifiersAndShareTriadsAndSections) {
    const auto triad = someTriad();
    const auto plane = std::make_shared<veksg::Section>();
    veksg::SectionState section(4, {plane}, {1}, 2, {true}, triad);
    section.setSeqId(12);
    {
        const veksg::SectionState copy(section);
        EXPECT_EQ(copy.getCmdId(), 4);
        EXPECT_EQ(copy.getSeqId(), 12);
        EXPECT_EQ(triad.use_count(), 3);
        EXPECT_EQ(plane.use_count(), 3);
        EXPECT_EQ(copy.sections.front(), plane);
    }
    EXPECT_EQ(triad.use_count(), 2);
    EXPECT_EQ(plane.use_count(), 2);

    veksg::TransformState transform(9, {1, 2}, {}, 0, triad);
    const auto older = someTriad();
    veksg::TransformState target(3, {}, {}, 1, older);
    target = transform;
    EXPECT_EQ(target.triad, triad);
    EXPECT_EQ(older.use_count(), 1);
    EXPECT_EQ(target.getCmdId(), 9);
    EXPECT_EQ(target.getSeqId(), -1);
    EXPECT_EQ(target.mode, 0);
    EXPECT_EQ(target.ids, (std::vector<int>{1, 2}));
}

TEST(States, ClearEmptiesListsButKeepsCapacityAndIdentifiers) {
    veksg::AppearanceState look(21, {1, 2, 3}, {1, 2}, {0.5f});
    look.setSeqId(5);
    const auto idCapacity = look.ids.capacity();
    look.clear();
    EXPECT_TRUE(look.ids.empty() && look.colors.empty() && look.transparencies.empty());
    EXPECT_EQ(look.ids.capacity(), idCapacity);
    EXPECT_GE(look.colors.capacity(), 2u);
    EXPECT_EQ(look.getCmdId(), 21);
    EXPECT_EQ(look.getSeqId(), 5);

    const auto triad = someTriad();
    veksg::TransformState transform(22, {1, 2}, {veksg::Transform(), veksg::Transform()}, 8, triad);
    transform.clear();
    EXPECT_TRUE(transform.ids.empty() && transform.transforms.empty());
    EXPECT_GE(transform.transforms.capacity(), 2u);
    EXPECT_EQ(transform.mode, 8);
    EXPECT_EQ(transform.triad, triad);
    EXPECT_EQ(transform.getCmdId(), 22);
}

TEST(States, ClipFlagStartsFalseAndOnlyCopiesCarryIt) {
    veksg::ClipNodeState clip(1, {});
    EXPECT_FALSE(clip.flag);
    EXPECT_TRUE(clip.flags.empty());
    clip.flag = true;
    const veksg::ClipNodeState copy(clip);
    EXPECT_TRUE(copy.flag);
    veksg::ClipNodeState assigned(2, {true});
    assigned = clip;
    EXPECT_TRUE(assigned.flag);
    EXPECT_TRUE(assigned.flags.empty());
}

} // namespace
