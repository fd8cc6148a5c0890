package com.nelo.zel.vosmar.cli.view;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.nelo.zel.vosmar.basic.ResultCode;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** Scripts decide by exit codes, so the exit code of a failure never changes. */
class ExitCodeTest {
  @Test
  void everyResultCodeKeepsItsExitCode() {
    Map<Integer, List<Integer>> resultCodes =
        Stream.of(ResultCode.values())
            .collect(
                Collectors.groupingBy(
                    code -> ExitCode.of(code.kind()),
                    Collectors.mapping(ResultCode::code, Collectors.toList())));

    assertEquals(
        List.of(16, 68, 69, 70, 103, 120, 130, 131, 132, 138, 139), resultCodes.remove(3));
    assertEquals(List.of(87, 89, 101, 108, 117, 137, 140, 151), resultCodes.remove(4));
    assertEquals(List.of(9, 21, 23, 26, 27, 29), resultCodes.remove(5));
    assertEquals(List.of(12, 15, 17, 18, 19, 20, 119), resultCodes.remove(6));
    assertEquals(119, resultCodes.remove(1).size());
    assertEquals(Map.of(), resultCodes);
  }
}
