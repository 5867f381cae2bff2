// Initialisation files: any text is kept unchanged, and every value that is put in is found again.

#include "host/data/TextEncoding.h"
#include "host/session/InitFile.h"
#include "tests/fuzz/Scratch.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using korvana::InitFile;
    using korvana::fuzz::require;
    // Three lines of names and a value, then the file.
    std::string_view text(reinterpret_cast<const char*>(bytes), size);
    std::string_view words[3];
    for (std::string_view& word : words) {
        word = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
    }
    InitFile file = InitFile::parse(text);
    const std::string once{text};
    require(file.bytes() == once, "a file keeps its bytes", once);
    for (const std::string& keyword : file.keywords(words[0]))
        require(file.value(words[0], keyword).has_value(), "a keyword that is listed has a value", keyword);
    InitFile cleared = file;
    require(cleared.clear(words[0]) == !file.keywords(words[0]).empty(), "what is cleared was there", once);
    require(cleared.keywords(words[0]).empty() && cleared.hasSection(words[0]) == file.hasSection(words[0]),
            "nothing but the heading remains", once);
    require(cleared.keywords(words[1]) == file.keywords(words[1]) || cleared.keywords(words[1]).empty(),
            "other sections stay", once);
    const auto read = InitFile::read(korvana::fuzz::scratch().write("any.ini", text));
    require(read.has_value() && read->bytes() == once, "any file can be read", once);
    for (const std::string& keyword : file.keywords(words[0]))
        require(korvana::isUtf8(keyword), "names are UTF-8", keyword);

    if (!file.put(words[0], words[1], words[2])) {
        require(file.bytes() == once, "what is refused changes nothing", once);
        return 0;
    }
    const auto value = file.value(words[0], words[1]);
    const InitFile back = InitFile::parse(file.bytes());
    require(back.hasSection(words[0]), "the section is there again", file.bytes());
    require(value.has_value() && back.value(words[0], words[1]) == value, "the value is found again",
            file.bytes());
    return 0;
}
