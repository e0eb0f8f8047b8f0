#!/usr/bin/env perl
# Writes norvakavlor/runtime/case_table.cpp: Unicode's simple upper-case mappings as ranges in which every
# `step`-th code point maps by the same distance. Run it from the root when perl's Unicode version moves on:
#     perl tools/case_table/generate.pl > norvakavlor/runtime/case_table.cpp
use strict;
use warnings;
use Unicode::UCD qw(prop_invmap);

my ($starts, $maps, $format, $default) = prop_invmap("Simple_Uppercase_Mapping");
die "unexpected format $format" unless $format eq "a" || $format eq "al";

my @pairs;
for my $i (0 .. $#$starts) {
    next if $maps->[$i] eq "0";
    my $end = $i < $#$starts ? $starts->[ $i + 1 ] : 0x110000;
    for my $code ($starts->[$i] .. $end - 1) {
        my $upper = $maps->[$i] + ($code - $starts->[$i]);
        push @pairs, [ $code, $upper - $code ] if $upper != $code;
    }
}

my @ranges;
for my $pair (@pairs) {
    my ($code, $distance) = @$pair;
    my $last = $ranges[-1];
    if ($last && $last->[2] == $distance) {
        my $gap = $code - $last->[1];
        if ($gap <= 2 && ($last->[0] == $last->[1] || $gap == $last->[3])) {
            $last->[1] = $code;
            $last->[3] = $gap;
            next;
        }
    }
    push @ranges, [ $code, $code, $distance, 1 ];
}

print "// Written by tools/case_table/generate.pl (Unicode ", Unicode::UCD::UnicodeVersion(), "); not edited by hand.\n";
print "#include <norvakavlor/runtime/case_table.h>\n\nnamespace norvakavlor {\n\n";
print "// clang-format off\n";
print "constexpr CaseRange kRanges[] = {\n";
printf "    {0x%04X, 0x%04X, %d, %d},\n", @$_ for @ranges;
print "};\n// clang-format on\n\n";
print "std::span<const CaseRange> upperCaseRanges() { return kRanges; }\n\n} // namespace norvakavlor\n";
