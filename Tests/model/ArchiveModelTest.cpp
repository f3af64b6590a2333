// Trees are saved and loaded by the library, and by a program in another language that knows the rules alone.
//
// KIV_ARCHIVE_TREES says how many trees.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>

#include <KivGenerics/Composite.h>
#include <gtest/gtest.h>

#include "model/Random.h"
#include "persistence/Archives.h"

using namespace KivGenerics;
using Testing::RecordingArchive;
using Testing::ScriptedArchive;

namespace {

std::string Json(std::int64_t number) {
    return std::to_string(number);
}
std::string Json(bool value) {
    return value ? "1" : "0";
}
std::string Json(double number) {
    return '"' + Testing::DoubleCall(number).substr(7) + '"';
}

std::string Json(const std::string& call) {
    std::string text = "\"";
    for (const char each : call) {
        text += each == '"' || each == '\\' ? "\\" : "";
        text += each;
    }
    return text + '"';
}

template <class List>
std::string Json(const List& list) {
    std::string text = "[";
    for (const auto& each : list) {
        text += text.size() > 1 ? "," : "";
        if constexpr (std::is_integral_v<std::decay_t<decltype(each)>>) {
            text += Json(static_cast<std::int64_t>(each));
        } else {
            text += Json(each);
        }
    }
    return text + "]";
}

std::string ValueToJson(const Model::Value& value) {
    return std::visit(
        [](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::monostate>) {
                return "null";
            } else if constexpr (std::is_integral_v<Held> && !std::is_same_v<Held, bool>) {
                return Json(std::int64_t{held});
            } else {
                return Json(held);
            }
        },
        value);
}

std::string ToJson(const Model::Item& item) {
    std::string children;
    for (const Model::Item* child = Model::FindAfter(item, -1); child != nullptr;
         child = Model::FindAfter(item, child->index)) {
        children += (children.empty() ? "" : ",") + ToJson(*child);
    }
    return R"({"kind":)" + Json(std::int64_t{item.type}) + R"(,"own":)" + Json(std::int64_t{item.temporality}) +
           R"(,"tag":)" + Json(std::int64_t{item.tag}) + R"(,"index":)" + Json(std::int64_t{item.index}) +
           R"(,"slots":)" + Json(std::int64_t{item.slots}) + R"(,"value":)" + ValueToJson(item.value) +
           R"(,"children":[)" + children + "]}";
}

/// The other program, fed line by line.
class Checker {
public:
    Checker() {
        // A checker that has found something is no longer there to read the rest.
        std::signal(SIGPIPE, SIG_IGN);
        pipe_ = ::popen("python3 '" KIV_ARCHIVE_MODEL "'", "w");
        EXPECT_NE(pipe_, nullptr);
    }
    void Feed(const std::string& line) { std::fputs((line + "\n").c_str(), pipe_); }
    int Finish() { return ::pclose(pipe_); }

private:
    std::FILE* pipe_ = nullptr;
};

class ArchiveModelTest : public testing::Test {
protected:
    /// Does some random steps, and tells of the trees that come of them.
    int FeedTrees(Checker& checker) {
        Model::World world;
        Model::DoRandomSteps(world, random_, 80);
        int trees = 0;
        for (std::size_t i = 0; i < Model::World::kTrees; ++i) {
            Model::Pair& pair = world.At(i);
            if (pair.model->root && !pair.library->IsReadOnly()) {
                Feed(checker, pair);
                ++trees;
            }
        }
        return trees;
    }

private:
    void Feed(Checker& checker, Model::Pair& pair) {
        const bool withTransient = random_() % 2 == 0;
        const int flags = random_() % 4 == 0 ? static_cast<int>(random_() % 256) : 255;
        // A derived temporality that was calculated for one node by itself need not be the one that a changed tree is saved
        // with, which is what the rules know.
        Node* const root = pair.library->GetRoot();
        root->SetTemporality(root->GetTemporality());
        RecordingArchive archive;
        const std::int32_t result = pair.library->SaveToArchive(&archive, withTransient, flags);
        const auto tree = CreateGenericTree(EnumOrvObjectType(0));
        ScriptedArchive script(archive.calls);
        std::int64_t loadResult = -1;
        try {
            loadResult = result == 0 ? tree->LoadFromArchive(&script) : result;
        } catch (const Exception&) {
            // A vector of mixed kinds is saved, and refused when it is loaded.
        }
        checker.Feed(R"({"tree":)" + ToJson(*pair.model->root) + R"(,"transient":)" + Json(withTransient) +
                     R"(,"flags":)" + Json(std::int64_t{flags}) + R"(,"result":)" + Json(std::int64_t{result}) +
                     R"(,"calls":)" + Json(archive.calls) + R"(,"loadResult":)" + Json(loadResult) + R"(,"loaded":)" +
                     (tree->GetRoot() != nullptr ? Describe(tree->GetRoot()) : "null") + "}");
    }

    /// What the library has loaded, told by what its nodes answer.
    static std::string Describe(Node* node) {
        Model::Item item;
        item.type = node->GetType();
        item.temporality = node->GetTemporality();
        item.tag = node->GetSemanticTag();
        item.index = node->GetIndex();
        item.value = Model::GetValue(node);
        std::string text = ToJson(item);
        std::string children;
        if (IsCompositeType(node->GetType())) {
            auto* const composite = static_cast<Composite*>(node);
            for (Node* child = composite->GetNext(-1); child != nullptr;
                 child = composite->GetNext(child->GetIndex())) {
                children += (children.empty() ? "" : ",") + Describe(child);
            }
        }
        return text.substr(0, text.size() - 2) + children + "]}";
    }

    std::mt19937 random_{20};
};

TEST_F(ArchiveModelTest, TreesAreSavedAndLoadedByTheRules) {
    const char* const wanted = std::getenv("KIV_ARCHIVE_TREES");
    const int trees = wanted != nullptr ? std::atoi(wanted) : 1000;
    Checker checker;
    for (int fed = 0; fed < trees;) {
        fed += FeedTrees(checker);
    }
    EXPECT_EQ(checker.Finish(), 0);
}

}  // namespace
