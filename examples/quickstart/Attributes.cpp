#include <cstdio>
#include <cwchar>
#include <memory>

#include "Steps.h"

namespace quickstart {

namespace {
std::shared_ptr<wchar_t> sharedText(const wchar_t* text) {
    const std::size_t count = std::wcslen(text) + 1;
    std::shared_ptr<wchar_t> owned(new wchar_t[count], std::default_delete<wchar_t[]>());
    std::wmemcpy(owned.get(), text, count);
    return owned;
}
} // namespace

void showAttributes(veksg::IFactory& factory, const std::shared_ptr<HostResizer>& resizer) {
    std::printf("attributes: two named strings, then resize gives each a flag\n");
    const auto attributes =
        std::static_pointer_cast<veksg::SCAttributes>(factory.create(veksg::Schema::ATTRIBUTES));
    attributes->attributes.insert(
        std::make_shared<veksg::StringValue>(L"material", sharedText(L"steel")));
    attributes->attributes.insert(
        std::make_shared<veksg::StringValue>(L"finish", sharedText(L"anodised")));
    attributes->resize(resizer);
    for (int key = 0; key < attributes->attributes.size(); ++key) {
        const auto& value = attributes->attributes.getValue(key);
        std::printf("  key %d: %ls = %ls (flag %d)\n", key, value->key(), value->get().get(),
                    attributes->flags.getValue(key));
    }

    std::printf("typed values: readers switch on the kind, never on the representation\n");
    const std::shared_ptr<veksg::IValue> values[] = {
        std::make_shared<veksg::IntValue>(L"holes", 4),
        std::make_shared<veksg::Int2Value>(L"holes", 4),
        std::make_shared<veksg::FloatValue>(L"mass", 2.5f),
    };
    for (const auto& value : values)
        std::printf("  %ls: kind %d\n", value->key(), static_cast<int>(value->type()));
}

} // namespace quickstart
