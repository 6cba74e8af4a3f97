"""What mutations.py changes, and what it leaves alone."""
import textwrap
import unittest

import mutations


def changed(source, families=()):
    """The source after each change, reduced to the lines that differ."""
    source = textwrap.dedent(source).strip("\n") + "\n"
    before = source.split("\n")
    found = []
    for edit in mutations.Source(source, list(families)).edits():
        after = (source[:edit.start] + edit.text + source[edit.end:]).split("\n")
        found.append("|".join(line.strip() for line in after if line not in before))
    return found


class Mutations(unittest.TestCase):
    def test_operators_between_operands(self):
        self.assertEqual(changed("bool x = a == b;"), ["bool x = a != b;"])
        self.assertEqual(changed("bool x = a < b;"), ["bool x = a <= b;"])
        self.assertEqual(changed("bool x = !a && b;"), ["bool x = a && b;", "bool x = !a || b;"])
        self.assertEqual(changed("int x = y << 3;"), ["int x = y >> 3;", "int x = y << 4;"])

    def test_what_looks_like_an_operator(self):
        self.assertEqual(changed("template <class T> void f(T&& value, const T* other);"), [])
        self.assertEqual(changed("bool operator==(const T& other) const;"), [])
        self.assertEqual(changed("return out << value;"), [])

    def test_literals(self):
        self.assertEqual(changed("int x = 7;"), ["int x = 8;"])
        self.assertEqual(changed("int x = 0xFFu;"), ["int x = 0x100u;"])
        self.assertEqual(changed("int x = 0666;"), ["int x = 0667;"])
        self.assertEqual(changed('auto x = "a\\"";'), ['auto x = "a\\"~";'])
        self.assertEqual(changed("char x = '\\'';"), ["char x = '~';"])
        self.assertEqual(changed("bool x = true;"), ["bool x = false;"])

    def test_what_no_program_shows(self):
        self.assertEqual(changed('// a == b\n/* 7 */\n#include "x.h"\n#if A == 1\n#endif'), [])
        self.assertEqual(changed('static_assert(sizeof(int) == 4, "four");'), [])
        self.assertEqual(changed('extern "C" {'), [])

    def test_bodies_of_macros(self):
        self.assertEqual(changed("#define X(a) \\\n    ((a) == 1)"),
                         ["((a) != 1)", "((a) == 2)"])

    def test_names_of_a_family(self):
        families = mutations.enumerations_of(["enum E : int { A = 1, B, /* C, */ D };"])
        self.assertEqual(families, [["A", "B", "D"]])
        self.assertEqual(changed("f(A); // B", families), ["f(B); // B"])
        self.assertEqual(changed("auto x = D;", families), ["auto x = A;"])

    def test_what_an_owner_offers(self):
        self.assertEqual(changed("int x = a.getB() + a.getC() + b.getB();"),
                         ["int x = a.getC() + a.getC() + b.getB();",
                          "int x = a.getB() - a.getC() + b.getB();",
                          "int x = a.getB() + a.getB() + b.getB();",
                          "int x = a.getB() + a.getC() - b.getB();"])
        self.assertEqual(changed("x_fields::a_ p; x_fields::b_ q;"),
                         ["x_fields::b_ p; x_fields::b_ q;", "x_fields::a_ p; x_fields::a_ q;"])

    def test_rows_and_elements(self):
        self.assertEqual(changed("auto of() { return rows(row<a>(b, c), row<d>(e, f)); }"),
                         ["auto of() { return rows( row<d>(e, f)); }",
                          "auto of() { return rows(row<a>(b, c)); }"])
        self.assertEqual(changed("Row t[] = {x, y, /* last */};"),
                         ["Row t[] = { y, /* last */};", "Row t[] = {x, /* last */};"])
        self.assertEqual(changed("struct S { T<a, b> c; void f(int, int) {} };"), [])

    def test_conditions(self):
        self.assertEqual(changed("if (a.empty()) b();"), ["if (!(a.empty())) b();"])
        self.assertEqual(changed("if (auto a = f(); a) b();"),
                         ["if (auto a = f(); !(a)) b();"])
        self.assertEqual(changed("return f(a);"), ["return !(f(a));"])
        self.assertEqual(changed("return a ? b : f(c);"), ["return a ? f(c) : b;"])
        self.assertEqual(changed("return a;"), [])

    def test_statements(self):
        source = """
            void f()
            {
                T x(1);
                for (auto y : x)
                    g(y);
                switch (x) {
                case A:
                    x = h();
                }
                throw E();
            }
            """
        self.assertEqual(changed(source), ["T x(2);", ";", ";", ";"])

    def test_what_ends_a_switch(self):
        source = """
            switch (x) {
            case A:
                break;
            case B:
                f();
                break;
            }
            """
        self.assertEqual(changed(source), [";", ";"])
        self.assertEqual(changed("for (;;) { f(); break; }"),
                         ["for (;;) { ; break; }", "for (;;) { f(); ; }"])


if __name__ == "__main__":
    unittest.main()
