import java.io.File;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.logging.Level;
import java.util.logging.Logger;
import org.verapdf.gf.foundry.VeraGreenfieldFoundryProvider;
import org.verapdf.pdfa.Foundries;
import org.verapdf.pdfa.PDFAParser;
import org.verapdf.pdfa.PDFAValidator;
import org.verapdf.pdfa.flavours.PDFAFlavour;
import org.verapdf.pdfa.results.TestAssertion;
import org.verapdf.pdfa.results.ValidationResult;
import org.verapdf.pdfa.validation.profiles.RuleId;

/**
 * Validates documents against PDF/UA-1 before and after their repair. Arguments: before, after, before, after, ... Fails when
 * one that was repaired breaks a rule that it kept before.
 */
final class NewFailures {
  /** The rules that a document breaks: how often, and the first place where it does. */
  private static final class Failures {
    final Map<String, Integer> counts = new TreeMap<>();
    final Map<String, String> places = new TreeMap<>();
  }

  public static void main(String[] files) throws Exception {
    Logger.getLogger("").setLevel(Level.OFF);
    VeraGreenfieldFoundryProvider.initialise();
    int worse = 0, rulesBefore = 0, rulesAfter = 0;
    for (int i = 0; i + 1 < files.length; i += 2) {
      Failures before = validate(files[i]);
      Failures after = validate(files[i + 1]);
      rulesBefore += before.counts.size();
      rulesAfter += after.counts.size();
      List<String> broken = newlyBroken(before, after);
      if (!broken.isEmpty()) worse++;
      System.out.printf("%-60s %2d rules broken before, %2d after%n", new File(files[i]).getName(), before.counts.size(),
          after.counts.size());
      for (String line : broken) System.out.println("  " + line);
      for (String line : moreOften(before, after)) System.out.println("  " + line);
    }
    System.out.printf("%d documents: %d rules broken before, %d after; %d documents break a rule that they kept%n",
        files.length / 2, rulesBefore, rulesAfter, worse);
    System.exit(files.length >= 2 && worse == 0 ? 0 : 1);
  }

  private static Failures validate(String file) throws Exception {
    Failures failures = new Failures();
    try (PDFAParser parser = Foundries.defaultInstance().createParser(new File(file), PDFAFlavour.PDFUA_1);
        PDFAValidator validator = Foundries.defaultInstance().createValidator(PDFAFlavour.PDFUA_1, false)) {
      ValidationResult result = validator.validate(parser);
      for (Map.Entry<RuleId, Integer> rule : result.getFailedChecks().entrySet())
        failures.counts.put(nameOf(rule.getKey()), rule.getValue());
      for (TestAssertion assertion : result.getTestAssertions()) {
        failures.places.putIfAbsent(nameOf(assertion.getRuleId()),
            assertion.getMessage() + " at " + assertion.getLocation().getContext());
      }
    }
    return failures;
  }

  private static String nameOf(RuleId rule) {
    return rule.getClause() + "-" + rule.getTestNumber();
  }

  private static List<String> newlyBroken(Failures before, Failures after) {
    List<String> lines = new ArrayList<>();
    for (String rule : after.counts.keySet()) {
      if (!before.counts.containsKey(rule))
        lines.add("NEW " + rule + " (" + after.counts.get(rule) + " times): " + after.places.get(rule));
    }
    return lines;
  }

  /** No failure of the test: a rule about texts is broken twice where a text has been made two. */
  private static List<String> moreOften(Failures before, Failures after) {
    List<String> lines = new ArrayList<>();
    for (Map.Entry<String, Integer> rule : after.counts.entrySet()) {
      Integer count = before.counts.get(rule.getKey());
      if (count != null && rule.getValue() > count)
        lines.add("more often: " + rule.getKey() + ", " + count + " to " + rule.getValue() + " times");
    }
    return lines;
  }
}
