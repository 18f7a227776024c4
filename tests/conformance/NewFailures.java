import java.io.File;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.TreeMap;
import java.util.logging.Level;
import java.util.logging.Logger;
import org.verapdf.core.ModelParsingException;
import org.verapdf.core.ValidationException;
import org.verapdf.gf.foundry.VeraGreenfieldFoundryProvider;
import org.verapdf.pdfa.Foundries;
import org.verapdf.pdfa.PDFAParser;
import org.verapdf.pdfa.PDFAValidator;
import org.verapdf.pdfa.flavours.PDFAFlavour;
import org.verapdf.pdfa.results.TestAssertion;
import org.verapdf.pdfa.results.ValidationResult;
import org.verapdf.pdfa.validation.profiles.RuleId;

/**
 * Validates documents against PDF/UA-1 before and after their repair. Arguments: the list of what is known, then before, after,
 * before, after, ... Fails when a repaired document breaks a rule that it kept before, or breaks one more often, and this is not
 * known, when a document cannot be read before its repair and this is not known, and when something known does not happen. A line of
 * the list is a document, a rule or "unreadable", and the reason, with tabs between them.
 */
final class NewFailures {
  /** The rules that a document breaks: how often, and the first place where it does. */
  private static final class Failures {
    final Map<String, Integer> counts = new TreeMap<>();
    final Map<String, String> places = new TreeMap<>();
  }

  private int rulesBefore, rulesAfter, known, unexpected;
  private final Map<String, String> reasons = new TreeMap<>();

  public static void main(String[] arguments) throws Exception {
    Logger.getLogger("").setLevel(Level.OFF);
    VeraGreenfieldFoundryProvider.initialise();
    boolean passed = arguments.length >= 3 && new NewFailures().run(arguments);
    System.exit(passed ? 0 : 1);
  }

  private boolean run(String[] arguments) throws Exception {
    for (String line : Files.readAllLines(Path.of(arguments[0]))) {
      String[] fields = line.split("\t");
      if (fields.length == 3 && !fields[0].equals("document")) reasons.put(fields[0] + " " + fields[1], fields[2]);
    }
    for (int i = 1; i + 1 < arguments.length; i += 2) {
      Failures after = validate(arguments[i + 1]);
      Failures before = validateDamaged(arguments[i]);
      if (before != null) {
        compare(arguments[i], before, after);
      } else {
        System.out.printf("%-64s cannot be read before, %d rules broken after%n", arguments[i], after.counts.size());
        judge(arguments[i], "unreadable", "", "the validator reads only the repaired document");
      }
    }
    for (String entry : reasons.keySet()) System.out.println("KNOWN, BUT DOES NOT HAPPEN: " + entry);
    System.out.printf("%d documents: %d rules broken before, %d after; worse: %d known, %d not known%n",
        arguments.length / 2, rulesBefore, rulesAfter, known, unexpected);
    return unexpected == 0 && reasons.isEmpty();
  }

  private void compare(String file, Failures before, Failures after) {
    rulesBefore += before.counts.size();
    rulesAfter += after.counts.size();
    System.out.printf("%-64s %2d rules broken before, %2d after%n", file, before.counts.size(), after.counts.size());
    for (Map.Entry<String, Integer> rule : after.counts.entrySet()) {
      int count = before.counts.getOrDefault(rule.getKey(), 0);
      if (rule.getValue() > count)
        judge(file, rule.getKey(), " (" + count + " to " + rule.getValue() + " times)", after.places.get(rule.getKey()));
    }
  }

  /** Tells what became worse, with the reason if it is known. */
  private void judge(String file, String rule, String times, String place) {
    String reason = reasons.remove(file + " " + rule);
    if (reason != null) known++; else unexpected++;
    System.out.println((reason != null ? "  known " : "  NEW ") + rule + times + ": " + (reason != null ? reason : place));
  }

  /** Null for a document that is too damaged for the validator. One that was repaired must not be. */
  private static Failures validateDamaged(String file) throws Exception {
    try {
      return validate(file);
    } catch (ValidationException | ModelParsingException error) {
      return null;
    }
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
}
