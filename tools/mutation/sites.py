"""Finds the places of a source file where a single fault can be put.

A site does not change the text but wraps pieces of it, so that one program holds all faults and an
environment variable says which of them is on: `a < b` becomes `(orvMutant(7) ? (a <= b) : (a < b))`.
"""
import re
from dataclasses import dataclass, field

from clang.cindex import CursorKind as K, Index, LinkageKind, TypeKind as T

TURNED = {'<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '==', '&&': '||', '||': '&&'}
ARITHMETIC = {'+': '-', '-': '+', '*': '/', '/': '*'}
ASSIGNED = {'+=': '-=', '-=': '+='}
INTEGERS = {T.CHAR_U, T.UCHAR, T.USHORT, T.UINT, T.ULONG, T.ULONGLONG, T.CHAR_S, T.SCHAR, T.SHORT,
            T.INT, T.LONG, T.LONGLONG}
NUMBERS = INTEGERS | {T.FLOAT, T.DOUBLE, T.LONGDOUBLE}
FUNCTIONS = {K.FUNCTION_DECL, K.CXX_METHOD, K.CONVERSION_FUNCTION, K.FUNCTION_TEMPLATE,
             K.CONSTRUCTOR, K.DESTRUCTOR}
# What is settled when the program is compiled; a fault there could not be switched on.
FIXED = {K.STATIC_ASSERT, K.ENUM_DECL, K.TYPE_ALIAS_DECL, K.TYPEDEF_DECL, K.PARM_DECL,
         K.USING_DECLARATION, K.CXX_UNARY_EXPR, K.TYPE_ALIAS_TEMPLATE_DECL}
EMPTY = {'{}', 'nullptr', 'std::nullopt', '0', '""', 'false', 'true', '*this'}
ROOM = {'reserve', 'shrink_to_fit'}  # a fault there costs time only
# Of two alike, either may come first.
SYMMETRICAL = re.compile(r'min|max|swap|equal|equalIgnoringCase|((is|are)S|s)ame([A-Z]\w*)?')
FAULTS_OF_A_TABLE = 4
ON = '\x01'  # stands in the text of a wrap for the question whether its fault is on


@dataclass
class Site:
    """A fault: `wraps` are the offsets of a piece of text, and what stands before and behind it."""
    file: str
    line: int
    rule: str
    what: str
    wraps: list
    keyword: list = field(default_factory=list)  # the `constexpr` of the variable that it is in


class Finder:
    def __init__(self, root, path, arguments):
        self.root, self.path, self.file = root, path, str(root / path)
        self.unit = Index.create().parse(self.file, args=arguments)
        self.bytes = open(self.file, 'rb').read()
        self.sites, self.seen = [], set()
        self.result, self.keyword, self.left = None, [], 0
        self.never_returns = False  # the compiler may take what follows a call of it for unreachable
        self.last = None  # where the last statement of a function with a result begins

    def find(self):
        self.within(self.unit.cursor)
        return self.sites

    # The text --------------------------------------------------------------------------------

    def text(self, cursor):
        return self.between(cursor.extent.start.offset, cursor.extent.end.offset)

    def between(self, start, end):
        return self.bytes[start:end].decode()

    def flat(self, cursor):
        """The text on one line, for the copy that is changed: lines keep their numbers."""
        return re.sub(r'\s+', ' ', re.sub(r'//[^\n]*', '', self.text(cursor))).strip()

    def behind(self, cursor):
        return self.bytes[cursor.extent.end.offset:].lstrip()[:1]

    def closing(self, cursor):
        """The offset behind the condition of an `if`, a `while`: where its parenthesis closes."""
        depth = 0
        skipped = rb'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'|//[^\n]*|[()]'
        for token in re.finditer(skipped, self.bytes[cursor.extent.start.offset:]):
            depth += {b'(': 1, b')': -1}.get(token[0], 0)
            if depth == 0 and token[0] == b')':
                return cursor.extent.start.offset + token.start()
        return -1

    # The sites -------------------------------------------------------------------------------

    def put(self, rule, cursor, what, *wraps):
        key = (rule, what, cursor.extent.start.offset, cursor.extent.end.offset)
        if key in self.seen or cursor.extent.start.offset == cursor.extent.end.offset:
            return
        if self.keyword:
            if self.left == 0:
                return
            self.left -= 1
        self.seen.add(key)
        self.sites.append(Site(self.path, cursor.extent.start.line, rule, what, [list(w) for w in wraps],
                               list(self.keyword)))

    def choice(self, rule, cursor, changed, original='({})', what=None):
        """The expression, or `changed` in its place."""
        before, behind = original.split('{}')
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        self.put(rule, cursor, what or f'{self.flat(cursor)}  ->  {changed}',
                 (start, end, f'({ON} ? {changed} : {before}', f'{behind})'))

    def infix(self, cursor, children):
        if len(children) != 2:
            return
        left, right = children
        operator = self.between(left.extent.end.offset, right.extent.start.offset).strip()
        numbers = all(c.type.get_canonical().kind in NUMBERS for c in children)
        for table, rule, allowed in ((TURNED, 'comparison turned', True),
                                     (ARITHMETIC, 'sign exchanged', numbers),
                                     (ASSIGNED, 'sign exchanged', numbers)):
            if operator in table and allowed:
                kind = 'connective turned' if operator in ('&&', '||') else rule
                self.choice(kind, cursor, f'({self.flat(left)} {table[operator]} {self.flat(right)})')

    def number(self, cursor):
        text = self.text(cursor)
        if cursor.kind == K.CXX_BOOL_LITERAL_EXPR:
            self.choice('constant changed', cursor, 'false' if text == 'true' else 'true', '{}')
        elif re.fullmatch(r"[0-9][0-9a-fA-FxXuUlL'.]*(e[-+]?\d+)?", text):
            self.choice('constant shifted', cursor, f'{text} + 1', '{}')

    def constant(self, cursor):
        """A named number where it is used: those that are known at compile time cannot be switched."""
        kind = cursor.type.get_canonical()
        if kind.kind in INTEGERS and re.fullmatch(r'(\w+::)*k[A-Z]\w*', self.text(cursor)):
            text = self.text(cursor)
            self.choice('constant shifted', cursor, f'orvShifted({text})', '{}', f'{text}  ->  {text} + 1')

    def condition(self, cursor):
        for value in ('true', 'false'):
            if self.flat(cursor) == value:
                continue
            self.choice('branch dropped', cursor, value, 'static_cast<bool>({})')

    def statement(self, cursor):
        """Calls and assignments whose value nobody takes."""
        inner = bare(cursor)
        if self.behind(cursor) != b';' or inner.kind == K.DECL_STMT or inner.kind.is_statement() \
                or self.never_returns:
            return
        if cursor.extent.start.offset == self.last:
            return  # a failure in place of a result: without it the compiler would complain
        text, children = self.flat(cursor), list(inner.get_children())
        arguments = list(inner.get_arguments()) if inner.kind == K.CALL_EXPR else []
        if inner.kind == K.CXX_THROW_EXPR or (
                inner.kind == K.CALL_EXPR and not inner.spelling.startswith('operator')
                and inner.spelling not in ROOM):
            self.choice('call left out', cursor, 'void()', 'void({})' if inner.kind == K.CALL_EXPR else '{}',
                        f'{text};  ->  nothing')
        elif self.assignment(arguments if len(arguments) == 2 else children):
            self.choice('result ignored', cursor, 'void()', 'void({})', f'{text};  ->  nothing')

    def assignment(self, sides):
        return len(sides) == 2 and self.between(
            sides[0].extent.end.offset, sides[1].extent.start.offset).strip() in ('=', '|=', '+=', '-=')

    def exchange(self, call):
        callee = call.referenced
        if (callee is None or callee.location.file is None or call.spelling.startswith('operator')
                or call.spelling in ROOM or SYMMETRICAL.fullmatch(call.spelling)
                or not callee.location.file.name.startswith(str(self.root))):
            return
        arguments = list(call.get_arguments())
        for first, second in zip(arguments, arguments[1:]):
            one, other = self.flat(first), self.flat(second)
            if one.startswith('&') and '::' in one:
                continue  # of a list of members, whose order says nothing
            if one and other and one != other and plain(first) == plain(second):
                self.put('arguments exchanged', call, f'{one}, {other}  ->  {other}, {one}',
                         *[(c.extent.start.offset, c.extent.end.offset, f'({ON} ? ({text}) : (', '))')
                           for c, text in ((first, other), (second, one))])

    def returned(self, cursor):
        values = list(cursor.get_children())
        if self.result is None or not values or self.behind(cursor) != b';':
            return
        text, kind = self.flat(values[0]), self.result.get_canonical().kind
        if text in EMPTY or is_first_of_enum(bare(values[0])) or kind in (T.LVALUEREFERENCE, T.VOID):
            return
        if kind == T.BOOL:
            if bare(values[0]).kind == K.CALL_EXPR:
                self.choice('return value replaced', values[0], f'!({text})', 'static_cast<bool>({})')
            return
        end = self.bytes.index(b';', cursor.extent.end.offset) + 1
        self.put('return value replaced', cursor, f'return {text};  ->  return {{}};',
                 (cursor.extent.start.offset, end, f'{{ if ({ON}) return {{}}; ', ' }'))

    # The walk --------------------------------------------------------------------------------

    def within(self, cursor):
        for child in cursor.get_children():
            if child.location.file and child.location.file.name == self.file:
                self.visit(child)

    def visit(self, cursor):
        kind = cursor.kind
        if kind in FIXED or kind == K.LAMBDA_EXPR and self.keyword:
            return
        if kind in FUNCTIONS or kind == K.LAMBDA_EXPR:
            self.function(cursor)
        elif kind in (K.VAR_DECL, K.FIELD_DECL):
            self.variable(cursor)
        elif kind in (K.IF_STMT, K.WHILE_STMT):
            self.branch(cursor)
        elif kind in (K.COMPOUND_STMT, K.FOR_STMT, K.CXX_FOR_RANGE_STMT, K.CASE_STMT, K.DEFAULT_STMT, K.DO_STMT):
            children = list(cursor.get_children())[1 if kind == K.CASE_STMT else 0:]
            body = children if kind == K.COMPOUND_STMT else children[-1:]
            for child in children:
                if child in body:
                    self.statement(child)
                self.visit(child)
        elif kind == K.CALL_EXPR:
            self.call(cursor)
        elif kind == K.DECL_REF_EXPR:
            self.constant(cursor)
        elif kind == K.MEMBER_REF_EXPR:
            for child in list(cursor.get_children())[:1]:
                if child.kind.is_expression():
                    self.visit(child)
        else:
            self.expression(cursor)
            self.within(cursor)

    def function(self, cursor):
        outer = self.result, self.never_returns, self.last
        self.result = None if cursor.kind == K.LAMBDA_EXPR else cursor.result_type
        start = cursor.extent.start.offset
        self.never_returns |= self.bytes[:start].rstrip().endswith(b'[[noreturn]]')
        if not self.between(cursor.extent.start.offset, cursor.extent.start.offset + 9) == 'consteval':
            body = [c for c in cursor.get_children() if c.kind != K.PARM_DECL and not is_reference(c)
                    and c.extent.start.offset >= cursor.location.offset]  # not in the type of the result
            for child in body:
                self.last = self.end_of(child)
                self.visit(child)
        self.result, self.never_returns, self.last = outer

    def end_of(self, body):
        statements = list(body.get_children()) if body.kind == K.COMPOUND_STMT else []
        has_result = self.result is not None and self.result.get_canonical().kind != T.VOID
        return statements[-1].extent.start.offset if statements and has_result else None

    def variable(self, cursor):
        head = self.between(cursor.extent.start.offset, cursor.location.offset)
        outer = self.keyword, self.left
        found = re.search(r'\bconstexpr\b', head)
        if found and not self.keyword and cursor.linkage == LinkageKind.EXTERNAL:
            return  # other files may need its value before this one has run
        if found and not self.keyword:
            start = cursor.extent.start.offset + len(head[:found.start()].encode())
            member = cursor.semantic_parent.kind in (K.CLASS_DECL, K.STRUCT_DECL, K.CLASS_TEMPLATE)
            self.keyword = [start, start + len('constexpr'), 'inline const' if member else 'const']
            self.left = FAULTS_OF_A_TABLE
        for child in cursor.get_children():
            before = self.between(cursor.location.offset, max(cursor.location.offset, child.extent.start.offset))
            is_bound = before.rstrip().endswith('[')  # of an array, which the compiler settles
            if before and child.kind.is_expression() and not is_bound:
                self.visit(child)
        self.keyword, self.left = outer

    def branch(self, cursor):
        if self.text(cursor).startswith('if constexpr'):
            return
        closing = self.closing(cursor)
        for child in cursor.get_children():
            if self.between(child.extent.end.offset, closing).strip() == '' and child.kind.is_expression() \
                    and child.extent.end.offset <= closing:
                self.condition(child)
            elif child.extent.start.offset > closing:
                self.statement(child)
            self.visit(child)

    def call(self, cursor):
        arguments = list(cursor.get_arguments())
        if cursor.spelling.startswith('operator'):
            self.infix(cursor, arguments)
        self.exchange(cursor)
        if cursor.spelling in ROOM:
            return
        children = list(cursor.get_children())
        for child in [c for c in children[:1] if c.kind.is_expression()] + arguments:
            self.visit(child)

    def expression(self, cursor):
        kind = cursor.kind
        children = list(cursor.get_children())
        if kind in (K.BINARY_OPERATOR, K.UNEXPOSED_EXPR, K.COMPOUND_ASSIGNMENT_OPERATOR):
            self.infix(cursor, [c for c in children if c.kind.is_expression()])
        elif kind in (K.INTEGER_LITERAL, K.FLOATING_LITERAL, K.CXX_BOOL_LITERAL_EXPR):
            self.number(cursor)
        elif kind == K.UNARY_OPERATOR and self.text(cursor)[:1] in ('!', '-') and self.text(cursor)[1:2] != '-':
            rule = 'comparison turned' if self.text(cursor)[0] == '!' else 'sign exchanged'
            kept = self.flat(children[0])
            self.choice(rule, cursor, f'static_cast<bool>({kept})' if rule == 'comparison turned' else f'({kept})')
        elif kind == K.CONDITIONAL_OPERATOR and children:
            self.condition(children[0])
        elif kind == K.RETURN_STMT:
            self.returned(cursor)


def bare(cursor):
    """Without the nodes that stand for conversions and the like."""
    while cursor.kind == K.UNEXPOSED_EXPR:
        children = list(cursor.get_children())
        if len(children) != 1:
            break
        cursor = children[0]
    return cursor


def is_first_of_enum(cursor):
    """Whether it is what `{}` is, too."""
    named = cursor.referenced if cursor.kind == K.DECL_REF_EXPR else None
    return named is not None and named.kind == K.ENUM_CONSTANT_DECL and named.enum_value == 0


def is_reference(cursor):
    return cursor.kind in (K.TYPE_REF, K.TEMPLATE_REF, K.NAMESPACE_REF, K.MEMBER_REF)


def plain(cursor):
    return re.sub(r'\bconst\b|[& ]', '', cursor.type.get_canonical().spelling)


def find_sites(root, path, arguments):
    return Finder(root, path, arguments).find()
