#!/usr/bin/env perl
# Writes norvakavlor/text/case_table.cpp: Unicode's simple mappings to upper case, as ranges in which every
# `step`-th code point maps by the same distance. If perl has a newer Unicode version, run from the root:
#     perl tools/case_table/generate.pl > norvakavlor/text/case_table.cpp
use strict;
use warnings;
use Unicode::UCD qw(prop_invmap);

sub ranges_of {
    my ($property) = @_;
    my ($starts, $maps, $format) = prop_invmap($property);
    die "unexpected format $format" unless $format eq "a" || $format eq "al";
    my @ranges;
    for my $i (0 .. $#$starts) {
        next if $maps->[$i] eq "0";
        my $end = $i < $#$starts ? $starts->[ $i + 1 ] : 0x110000;
        for my $code ($starts->[$i] .. $end - 1) {
            my $distance = $maps->[$i] - $starts->[$i];
            next if $distance == 0;
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
    }
    return @ranges;
}

print "// Written by tools/case_table/generate.pl (Unicode ", Unicode::UCD::UnicodeVersion(), "); not edited by hand.\n";
print "#include <norvakavlor/text/case_table.h>\n\nnamespace norvakavlor {\n\n// clang-format off\n";
print "constexpr CaseRange kUpper[] = {\n";
printf "    {0x%04X, 0x%04X, %d, %d},\n", @$_ for ranges_of("Simple_Uppercase_Mapping");
print "};\n// clang-format on\n\n";
print "std::span<const CaseRange> upperCaseRanges() { return kUpper; }\n\n} // namespace norvakavlor\n";
