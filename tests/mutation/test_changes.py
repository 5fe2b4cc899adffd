import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from changes import changes_of  # noqa: E402
from source import Source  # noqa: E402


def results(text, kind):
    """The text after each change of the kind."""
    return [change.applied(text) for change in changes_of(text) if change.kind == kind]


def in_body(statements):
    return "void f() {\n" + statements + "\n}\n"


class Changes(unittest.TestCase):
    def expect(self, kind, text, *changed):
        self.assertEqual(results(text, kind), list(changed))

    def expect_removed(self, text, *statements):
        removed = [text[change.start:change.end] for change in changes_of(text) if change.kind == "statement removed"]
        self.assertEqual(removed, list(statements))

    def test_conditions_are_negated(self):
        self.expect("condition negated", "if (a)", "if (!(a))")
        self.expect("condition negated", "while (f(b))", "while (!(f(b)))")
        self.expect("condition negated", "if (!a)", "if (a)")
        self.expect("condition negated", "for (int i = 0; more; ++i)", "for (int i = 0; !(more); ++i)")

    def test_a_declared_condition_is_negated_behind_its_declaration(self):
        self.expect("condition negated", "if (const char* text = f())", "if (const char* text = f(); !(text))")
        self.expect("condition negated", "if (const int code = f(); code)", "if (const int code = f(); !(code))")

    def test_comparisons(self):
        self.expect("comparison", "a == b", "a != b")
        self.expect("comparison", "a < b", "a <= b", "a > b")
        self.expect("comparison", "a && b", "a || b")

    def test_brackets_of_templates_and_references_are_no_operators(self):
        for text in ("std::vector<int> a", "template <typename T>", "int&& a", "const char* a", "p->b"):
            self.assertEqual(changes_of(text), [], text)

    def test_arithmetic(self):
        self.expect("arithmetic", "a + b", "a - b")
        self.expect("arithmetic", "a += b", "a -= b")
        self.expect("arithmetic", "f(-a)", "f(a)")
        self.expect("arithmetic", "++a", "--a")

    def test_joined_texts_are_not_subtracted(self):
        self.expect("arithmetic", 'a + "b"')
        self.expect("arithmetic", '"a" + b')

    def test_a_destructor_is_no_sign(self):
        self.expect("arithmetic", " ~Handle() = default;")

    def test_constants_are_one_more_or_less(self):
        self.expect("constant", "f(5)", "f(4)", "f(6)")
        self.expect("constant", "f(0)", "f(1)")
        self.expect("constant", "x = 0x1F;", "x = 30;", "x = 32;")
        self.expect("constant", "f(true)", "f(false)")
        self.expect("constant", "f(kLimit)", "f((kLimit + 1))")
        self.expect("constant", "f(VK_TAB)", "f((VK_TAB + 1))")

    def test_a_pure_function_and_a_name_with_digits_are_no_constants(self):
        self.expect("constant", "virtual void f() = 0;")
        self.expect("constant", "crc32(octets)")

    def test_what_cannot_be_seen_is_not_changed(self):
        self.expect("constant", "int size = 0;\nread(&size);")
        self.expect("constant", "SendMessageA(box, BM_GETCHECK, 0, 0)", "SendMessageA(box, (BM_GETCHECK + 1), 0, 0)")
        self.expect_removed(in_body("switch (a) {\ncase kB: break;\ndefault: break;\n}"), "break;")

    def test_a_first_value_that_is_used_is_changed(self):
        self.expect("constant", "int size = 0;\nwhile (size < n)\n    read(&size);",
                    "int size = 1;\nwhile (size < n)\n    read(&size);")

    def test_a_separated_number_is_one_number(self):
        self.expect("constant", "f(60'000)", "f(59999)", "f(60001)")

    def test_flags_are_removed(self):
        self.expect("flag removed", "f(A | B | C)", "f(B | C)", "f(A | C)", "f(A | B)")
        self.expect("flag removed", "f(a || b)")

    def test_choices_are_swapped(self):
        self.expect("choice swapped", "x = a ? b : c;", "x = a ? c : b;")
        self.expect("choice swapped", "f(a ? std::x(1) : c)", "f(a ? c : std::x(1))")

    def test_texts_are_altered(self):
        self.expect("text altered", 'f("ab")', 'f("~ab")')
        self.expect("text altered", "f('a')", "f('~')")

    def test_comments_and_directives_are_left_alone(self):
        self.assertEqual(changes_of('#include "a/b.h"\n// if (a == 5)\n/* f(1) */\n#define A 1\n'), [])
        self.assertEqual(changes_of("__attribute__((format(printf, 1, 2)))"), [])

    def test_statements_are_removed(self):
        self.expect_removed(in_body("    g(1);\n    a = b;\n    return;"), "g(1);", "a = b;", "return;")
        self.expect_removed(in_body("if (a)\n g();\nelse\n h();"), "g();", "h();")
        self.expect_removed(in_body("for (int i = 0; i < 2; ++i)\n g(i);"), "g(i);")
        self.expect_removed(in_body("switch (a) {\ncase kB: g(); break;\ndefault: h();\n}"), "g();", "break;", "h();")

    def test_declarations_are_not_removed(self):
        self.expect_removed(in_body("int a = 1;\nconst HWND b = g();\nauto* const c = d;\nstd::vector<int> e;\nT f{1};"))
        self.expect_removed("struct S {\n    S(int);\n    int f() const;\n    int a = 1;\n};\n")

    def test_a_statement_holds_its_lambda(self):
        self.expect_removed(in_body("run([&] { g(); }, a);"), "run([&] { g(); }, a);", "g();")

    def test_values_are_returned_empty(self):
        self.expect("return emptied", "int f() { return a; }", "int f() { return {}; }")
        self.expect("return emptied", "int f() { return 0; }")
        self.expect("return emptied", "auto f() { return g([] { return a; }); }", "auto f() { return {}; }",
                    "auto f() { return g([] { return {}; }); }")

    def test_a_change_is_shown_by_its_lines(self):
        text = in_body("    if (a)\n        return;\n    call(first,\n         second);")
        shown = {change.shown(Source(text)) for change in changes_of(text)}
        self.assertIn(("if (a) return;", "if (a) ;"), shown)
        self.assertIn(("call(first, second);", ";"), shown)


if __name__ == "__main__":
    unittest.main()
