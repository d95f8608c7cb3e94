// The shared libraries export exactly what their headers declare, and every
// declared export is reached by a conformance row or a named test.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace {

std::set<std::string> declared(const char* header, const std::string& marker) {
    std::ifstream in(header);
    EXPECT_TRUE(in.good()) << header;
    const std::regex decl("^" + marker + " .*?([A-Za-z_][A-Za-z0-9_]*) *\\(");
    std::set<std::string> names;
    std::string line;
    std::smatch m;
    while (std::getline(in, line))
        if (std::regex_search(line, m, decl)) names.insert(m[1]);
    return names;
}

std::set<std::string> exported(const char* library) {
    const std::string cmd = std::string("nm -D --defined-only ") + library;
    std::FILE* p = popen(cmd.c_str(), "r");
    EXPECT_NE(p, nullptr);
    std::set<std::string> names;
    char buf[512];
    while (p && std::fgets(buf, sizeof buf, p)) {
        char addr[64], type[8], name[400];
        if (std::sscanf(buf, "%63s %7s %399s", addr, type, name) == 3) names.insert(name);
    }
    if (p) {
        EXPECT_EQ(pclose(p), 0) << cmd;
    }
    return names;
}

TEST(Exports, LibraryExportsExactlyItsHeader) {
    struct Case { const char* lib; const char* header; const char* marker; std::size_t atLeast; };
    const Case cases[] = {
        {ZETSP_LIB, ZETSP_HEADER, "ZETAPI", 86},
        {ZETCORE_LIB, ZETCORE_HEADER, "ZETCORE_API", 8},
    };
    for (const Case& c : cases) {
        const auto want = declared(c.header, c.marker);
        const auto have = exported(c.lib);
        EXPECT_GE(want.size(), c.atLeast) << c.header;
        for (const auto& n : want) EXPECT_TRUE(have.count(n)) << c.lib << " lacks " << n;
        for (const auto& n : have) EXPECT_TRUE(want.count(n)) << c.lib << " also exports " << n;
    }
}

// Rows and tests name each export in full, so a scan of the test sources
// (comments removed) finds every export that something calls.
std::set<std::string> namedInTests() {
    std::set<std::string> names;
    const std::regex comment(R"(//[^\n]*|/\*[\s\S]*?\*/)"), ident("[A-Za-z_][A-Za-z0-9_]*");
    for (const auto& f : std::filesystem::recursive_directory_iterator(ZETSP_TESTS_DIR)) {
        const auto ext = f.path().extension();
        if (ext != ".cpp" && ext != ".hpp" && ext != ".c") continue;
        if (f.path().filename() == "exports_test.cpp") continue;
        std::ifstream in(f.path());
        std::stringstream text;
        text << in.rdbuf();
        const std::string code = std::regex_replace(text.str(), comment, " ");
        for (std::sregex_iterator i(code.begin(), code.end(), ident), e; i != e; ++i) names.insert(i->str());
    }
    return names;
}

TEST(Exports, EveryExportIsReachedByATest) {
    const auto named = namedInTests();
    std::string missing;
    for (const char* header : {ZETSP_HEADER, ZETCORE_HEADER})
        for (const auto& n : declared(header, header == std::string(ZETSP_HEADER) ? "ZETAPI" : "ZETCORE_API"))
            if (!named.count(n)) missing += " " + n;
    EXPECT_TRUE(missing.empty()) << "no row or test reaches:" << missing;
}

}  // namespace
