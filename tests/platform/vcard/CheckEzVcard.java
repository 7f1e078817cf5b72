// Reads every .vcf file of a folder with ez-vcard and prints the fields the
// book uses in the canonical listing of vcard_interop_test.cpp. Run with the
// source launcher: java -cp ez-vcard.jar:vinnie.jar CheckEzVcard.java DIR
import ezvcard.Ezvcard;
import ezvcard.VCard;
import ezvcard.parameter.VCardParameter;
import ezvcard.property.Address;
import ezvcard.property.Email;
import ezvcard.property.Photo;
import ezvcard.property.StructuredName;
import ezvcard.property.Telephone;
import ezvcard.property.Url;
import java.io.File;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

public class CheckEzVcard {
    static String esc(String s) {
        if (s == null) return "";
        return s.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r");
    }

    static String join(List<String> values) {
        return values == null ? "" : esc(String.join(",", values));
    }

    static String kind(List<? extends VCardParameter> types, String rawType) {
        for (VCardParameter t : types) {
            if (t.getValue().equalsIgnoreCase("work")) return "WORK";
        }
        if (rawType != null) {
            for (String t : rawType.split(",")) {
                if (t.trim().equalsIgnoreCase("work")) return "WORK";
            }
        }
        return "HOME";
    }

    static List<String> lines(VCard card) {
        List<String> out = new ArrayList<>();
        out.add("FN\t" + (card.getFormattedName() == null ? "" : esc(card.getFormattedName().getValue())));
        StructuredName n = card.getStructuredName();
        if (n == null) {
            out.add("N\t\t\t");
        } else {
            out.add("N\t" + esc(n.getFamily()) + "\t" + esc(n.getGiven()) + "\t" + join(n.getAdditionalNames()));
        }
        if (!card.getTitles().isEmpty()) out.add("TITLE\t" + esc(card.getTitles().get(0).getValue()));
        if (card.getOrganization() != null) {
            StringBuilder sb = new StringBuilder("ORG");
            for (String level : card.getOrganization().getValues()) sb.append('\t').append(esc(level));
            out.add(sb.toString());
        }
        for (Telephone t : card.getTelephoneNumbers()) {
            String value = t.getText() != null ? t.getText() : (t.getUri() == null ? "" : t.getUri().getNumber());
            out.add("TEL\t" + kind(t.getTypes(), null) + "\t" + esc(value));
        }
        for (Email e : card.getEmails()) out.add("EMAIL\t" + kind(e.getTypes(), null) + "\t" + esc(e.getValue()));
        for (Url u : card.getUrls()) out.add("URL\t" + kind(List.of(), u.getType()) + "\t" + esc(u.getValue()));
        for (Address a : card.getAddresses()) {
            out.add("ADR\t" + kind(a.getTypes(), null) + "\t" + join(a.getPoBoxes()) + "\t"
                    + join(a.getExtendedAddresses()) + "\t" + join(a.getStreetAddresses()) + "\t"
                    + join(a.getLocalities()) + "\t" + join(a.getRegions()) + "\t" + join(a.getPostalCodes())
                    + "\t" + join(a.getCountries()));
        }
        if (!card.getPhotos().isEmpty()) {
            Photo p = card.getPhotos().get(0);
            byte[] data = p.getData() == null ? new byte[0] : p.getData();
            long sum = 0;
            for (byte b : data) sum = (sum + (b & 0xFF)) & 0xFFFFFFFFL;
            String type = p.getParameters().getType();
            out.add("PHOTO\t" + (type == null ? "" : type.toUpperCase()) + "\t" + data.length + "\t" + sum);
        }
        return out;
    }

    public static void main(String[] args) throws Exception {
        File[] files = new File(args[0]).listFiles((dir, name) -> name.endsWith(".vcf"));
        Arrays.sort(files, (a, b) -> a.getName().compareTo(b.getName()));
        StringBuilder all = new StringBuilder();
        for (File f : files) {
            all.append("== ").append(f.getName()).append('\n');
            try {
                String text = new String(Files.readAllBytes(f.toPath()), StandardCharsets.UTF_8);
                List<VCard> cards = Ezvcard.parse(text).all();
                if (cards.size() != 1) throw new IllegalStateException(cards.size() + " cards");
                for (String line : lines(cards.get(0))) all.append(line).append('\n');
            } catch (Exception e) {
                all.append("ERROR ").append(esc(e.toString())).append('\n');
            }
        }
        System.out.write(all.toString().getBytes(StandardCharsets.UTF_8));
        System.out.flush();
    }
}
